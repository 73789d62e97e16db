#pragma once

#include <QSystemTrayIcon>

class QString;

// Non-blocking notices shown as tray balloons (implemented by the main window).
class IBubleMessageProvider {
public:
    virtual ~IBubleMessageProvider() = default;

    virtual void showBubbleMessage(const QString& text, QSystemTrayIcon::MessageIcon icon,
                                   int milliseconds) = 0;
};
