#include "support/widgetpainting.h"

#include "support/pngbytes.h"

#include <QWidget>
#include <cstdlib>

namespace tavero::test {

QImage paintedImage(QWidget& widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

bool colorsNear(const QColor& actual, const QColor& expected, int tolerance)
{
    return std::abs(actual.alpha() - expected.alpha()) <= tolerance &&
           std::abs(actual.red() - expected.red()) <= tolerance &&
           std::abs(actual.green() - expected.green()) <= tolerance &&
           std::abs(actual.blue() - expected.blue()) <= tolerance;
}

QString colorMismatch(const QColor& actual, const QColor& expected)
{
    return QStringLiteral("got %1, expected %2")
        .arg(actual.name(QColor::HexArgb), expected.name(QColor::HexArgb));
}

QByteArray pngBytes(const QColor& color, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return pngBytes(image);
}

} // namespace tavero::test
