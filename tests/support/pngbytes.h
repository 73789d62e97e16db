#pragma once

#include <QByteArray>
#include <QImage>

namespace tavero::test {

// `image` encoded as PNG, as the service sends flag pictures.
QByteArray pngBytes(const QImage& image);
// A picture of one colour as PNG bytes.
QByteArray pngBytes(const QColor& color, const QSize& size = QSize(60, 45));

} // namespace tavero::test
