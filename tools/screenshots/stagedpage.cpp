#include "stagedpage.h"

#include <QVBoxLayout>

namespace tavero::screenshots {

StagedPage::StagedPage(std::unique_ptr<ClientStage> stage, std::unique_ptr<QWidget> page)
    : m_stage(std::move(stage))
    , m_page(std::move(page))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_page.get());
    resize(m_page->size());
}

// Members go in reverse order: the page before the stage it holds references into.
StagedPage::~StagedPage() = default;

} // namespace tavero::screenshots
