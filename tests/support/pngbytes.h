#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

namespace tavero::test {

// `image` encoded as PNG, as the service sends flag pictures.
inline QByteArray pngBytes(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

} // namespace tavero::test
