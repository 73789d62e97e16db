#include "connection/ovpninputcheck.h"

#include <QByteArray>
#include <QHostAddress>
#include <QRegularExpression>
#include <QStringList>

namespace tavero {

bool OvpnInputCheck::isPlainHost(const QString& host)
{
    if (host.isEmpty() || host.size() > 253) {
        return false;
    }
    static const QRegularExpression name(QStringLiteral(
        R"(^[A-Za-z0-9]([A-Za-z0-9-]{0,61}[A-Za-z0-9])?(\.[A-Za-z0-9]([A-Za-z0-9-]{0,61}[A-Za-z0-9])?)*\z)"));
    if (name.match(host).hasMatch()) {
        return true;
    }
    // Only the characters of a literal address: QHostAddress would also take a "%scope" suffix.
    static const QRegularExpression addressCharacters(QStringLiteral("^[0-9A-Fa-f:.]+\\z"));
    return addressCharacters.match(host).hasMatch() && QHostAddress().setAddress(host);
}

bool OvpnInputCheck::isPemText(const QString& text)
{
    if (text.size() > maximumPemLength) {
        return false;
    }
    static const QRegularExpression begin(
        QStringLiteral("^-----BEGIN ([A-Z0-9]+(?: [A-Z0-9]+)*)-----\\z"));
    static const QRegularExpression end(
        QStringLiteral("^-----END ([A-Z0-9]+(?: [A-Z0-9]+)*)-----\\z"));
    static const QRegularExpression base64Line(QStringLiteral("^[A-Za-z0-9+/]{1,128}={0,2}\\z"));
    static const QRegularExpression blank(QStringLiteral("^[ \t]*\\z"));

    QString label; // of the open block; empty outside any block
    QByteArray body;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (QString line : lines) {
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        if (label.isEmpty()) {
            if (blank.match(line).hasMatch()) {
                continue;
            }
            const QRegularExpressionMatch opening = begin.match(line);
            if (!opening.hasMatch()) {
                return false;
            }
            label = opening.captured(1);
            body.clear();
            continue;
        }
        const QRegularExpressionMatch closing = end.match(line);
        if (closing.hasMatch()) {
            if (closing.captured(1) != label || body.isEmpty()) {
                return false;
            }
            const auto decoded =
                QByteArray::fromBase64Encoding(body, QByteArray::AbortOnBase64DecodingErrors);
            if (!decoded || decoded.decoded.isEmpty()) {
                return false;
            }
            label.clear();
            continue;
        }
        if (!base64Line.match(line).hasMatch()) {
            return false;
        }
        body += line.toLatin1();
    }
    return label.isEmpty();
}

} // namespace tavero
