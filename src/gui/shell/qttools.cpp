#include "gui/shell/qttools.h"

#include <QFont>
#include <QFontMetrics>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QWidget>

namespace {
// The pages' "semibold": between QFont::Medium (57) and QFont::Bold (75).
constexpr int semiboldWeight = 63;
} // namespace

void QtTools::paintWidget(QWidget* widget, QColor color)
{
    if (!widget) {
        return;
    }
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, color);
    widget->setAutoFillBackground(true);
    widget->setPalette(palette);
}

void QtTools::setLabelFontColor(QLabel* label, QColor color)
{
    if (!label) {
        return;
    }
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
}

void QtTools::setButtonTextPadding(QPushButton* button, int padding)
{
    if (!button) {
        return;
    }
    const int textWidth = QFontMetrics(button->font()).horizontalAdvance(button->text());
    button->setMinimumWidth(textWidth + 2 * padding);
}

void QtTools::setSemiboldFont(QFont& font)
{
    font.setWeight(semiboldWeight);
}

void QtTools::setSemiboldFont(QWidget* widget)
{
    if (!widget) {
        return;
    }
    QFont font = widget->font();
    setSemiboldFont(font);
    widget->setFont(font);
}

void QtTools::setBoldFont(QWidget* widget, bool bold)
{
    if (!widget) {
        return;
    }
    QFont font = widget->font();
    font.setBold(bold);
    widget->setFont(font);
}
