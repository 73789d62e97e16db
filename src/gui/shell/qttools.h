#pragma once

#include <QColor>

class QFont;
class QLabel;
class QPushButton;
class QWidget;

// Small painting and font helpers the pages share. Every operation ignores a null widget.
class QtTools {
public:
    QtTools() = default;

    // Fills the widget's background with the colour (Window role, automatic filling on).
    static void paintWidget(QWidget* widget, QColor color);
    // Sets the colour of the label's text (WindowText role).
    static void setLabelFontColor(QLabel* label, QColor color);
    // Minimum width := width of the button's text in the button's font + 2 × padding; the minimum
    // height is left as it was.
    static void setButtonTextPadding(QPushButton* button, int padding);
    // Weight 63 (semibold).
    static void setSemiboldFont(QFont& font);
    static void setSemiboldFont(QWidget* widget);
    // Sets or clears the bold flag of the widget's font.
    static void setBoldFont(QWidget* widget, bool bold);
};
