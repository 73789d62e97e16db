#include "stagedpage.h"

#include "gui/pages/abstractcontentpage.h"
#include "gui/pages/waitingplate.h"

namespace tavero::screenshots {

namespace {
constexpr int pageWidth = 360;
constexpr int pageHeight = 550;
} // namespace

StagedPage::StagedPage(std::unique_ptr<ClientStage> stage,
                       std::unique_ptr<Gui::AbstractContentPage> page, int fixedHeight)
    : StageHolder{std::move(stage)}
    , MainWindow(StageHolder::stage->manager())
    , m_page(std::move(page))
{
    ClientStage::applyFontPass(this);
    setWaitingPlate(new Gui::WaitingPlate());
    setContent(m_page.get());
    setMinimumSize(pageWidth, pageHeight);
    if (fixedHeight > 0)
        resize(pageWidth, fixedHeight);
    else
        adjustSize();
}

StagedPage::~StagedPage()
{
    setContent(nullptr);
    m_page.reset();
}

} // namespace tavero::screenshots
