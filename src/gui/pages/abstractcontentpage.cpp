#include "gui/pages/abstractcontentpage.h"

namespace Gui {

AbstractContentPage::AbstractContentPage(QWidget* parent)
    : QWidget(parent)
{}

AbstractContentPage::~AbstractContentPage() = default;

void AbstractContentPage::startWaiting()
{
    emit aboutToStartWaiting();
}

void AbstractContentPage::stopWaiting()
{
    emit aboutToStopWaiting();
}

} // namespace Gui
