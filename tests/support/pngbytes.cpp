#include "support/pngbytes.h"

#include <QBuffer>

namespace tavero::test {

QByteArray pngBytes(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray pngBytes(const QColor& color, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return pngBytes(image);
}

} // namespace tavero::test
