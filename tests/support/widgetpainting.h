#pragma once

#include <QColor>
#include <QImage>

class QWidget;

namespace tavero::test {

// What the widget and its children paint, over a transparent image of the widget's size (no
// window background), so translucency shows in the alpha channel. Format ARGB32.
QImage paintedImage(QWidget& widget);

// True when every channel, alpha included, differs by at most `tolerance`.
bool colorsNear(const QColor& actual, const QColor& expected, int tolerance);

// "got #aarrggbb, expected #aarrggbb", for failure messages.
QString colorMismatch(const QColor& actual, const QColor& expected);

// A picture of one colour as PNG bytes, as the service sends flags.
QByteArray pngBytes(const QColor& color, const QSize& size = QSize(60, 45));

} // namespace tavero::test
