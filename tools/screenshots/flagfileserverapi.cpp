#include "flagfileserverapi.h"

#include <QFile>
#include <QRegularExpression>

namespace tavero::screenshots {

FlagFileServerApi::FlagFileServerApi(const QString& flagDirectory)
    : m_flagDirectory(flagDirectory)
{}

QByteArray FlagFileServerApi::receiveFlagPicture(const QString& countryCode, FlagPictureSize size)
{
    // Only plain codes name a file: nothing outside the folder can be reached.
    static const QRegularExpression plainCode(QStringLiteral("^[a-z]{2}$"));
    if (!plainCode.match(countryCode).hasMatch())
        return {};
    QFile file(m_flagDirectory.filePath(
        QStringLiteral("%1/%2.png").arg(flagPictureSizeText(size), countryCode)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

} // namespace tavero::screenshots
