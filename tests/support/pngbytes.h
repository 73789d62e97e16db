#pragma once

#include <QByteArray>
#include <QImage>

namespace tavero::test {

// `image` encoded as PNG, as the service sends flag pictures.
QByteArray pngBytes(const QImage& image);

} // namespace tavero::test
