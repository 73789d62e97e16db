#include "gui/pages/hoverpushbutton.h"

#include <QEvent>

namespace Gui {

HoverPushButton::HoverPushButton(QWidget* parent)
    : QPushButton(parent)
{}

HoverPushButton::~HoverPushButton() = default;

bool HoverPushButton::event(QEvent* event)
{
    if (event->type() == QEvent::Enter)
        emit hoverEntered();
    else if (event->type() == QEvent::Leave)
        emit hoverLeaved();
    return QPushButton::event(event);
}

} // namespace Gui
