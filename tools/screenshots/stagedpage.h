#pragma once

#include "clientstage.h"
#include "gui/shell/mainwindow.h"

#include <memory>

namespace Gui {
class AbstractContentPage;
}

namespace tavero::screenshots {

// Keeps the stage alive from before the window is built until after it is gone.
struct StageHolder {
    std::unique_ptr<ClientStage> stage;
};

// A page inside the client's real main window (its style sheet, its font pass, its size rules),
// together with the stage the page talks to. The page goes first, then the window, then the stage.
class StagedPage : private StageHolder, public MainWindow {
public:
    // `fixedHeight` 0: the window takes the page's size hint, at least 360 × 550, as the client
    // does for every page but the server list, which keeps the window's size.
    StagedPage(std::unique_ptr<ClientStage> stage, std::unique_ptr<Gui::AbstractContentPage> page,
               int fixedHeight = 0);
    ~StagedPage() override;

    Gui::AbstractContentPage* page() const { return m_page.get(); }
    ClientStage& clientStage() { return *stage; }

private:
    std::unique_ptr<Gui::AbstractContentPage> m_page;
};

} // namespace tavero::screenshots
