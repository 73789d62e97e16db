#pragma once

#include "clientstage.h"

#include <QWidget>
#include <memory>

namespace tavero::screenshots {

// Hosts a page together with the stage it talks to, so the photographed widget owns both; the
// page goes first when the host is destroyed. The host takes the page's size.
class StagedPage : public QWidget {
public:
    StagedPage(std::unique_ptr<ClientStage> stage, std::unique_ptr<QWidget> page);
    ~StagedPage() override;

    QWidget* page() const { return m_page.get(); }
    ClientStage& stage() { return *m_stage; }

private:
    std::unique_ptr<ClientStage> m_stage;
    std::unique_ptr<QWidget> m_page;
};

} // namespace tavero::screenshots
