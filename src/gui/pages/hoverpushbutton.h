#pragma once

#include <QPushButton>

namespace Gui {

// A push button that reports the mouse entering and leaving it, so a page can change the look of
// related controls while the pointer rests on it.
class HoverPushButton : public QPushButton {
    Q_OBJECT

public:
    explicit HoverPushButton(QWidget* parent = nullptr);
    ~HoverPushButton() override;

signals:
    void hoverEntered();
    void hoverLeaved();

protected:
    // Emits the hover signals, then handles every event as a push button does.
    bool event(QEvent* event) override;
};

} // namespace Gui
