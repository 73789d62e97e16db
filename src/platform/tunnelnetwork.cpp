#include "platform/tunnelnetwork.h"

#include <QHostAddress>
#include <QMap>
#include <QRegularExpression>

namespace tavero {
namespace {

bool isAddress(const QString& text)
{
    QHostAddress address;
    return !text.contains(QLatin1Char('%')) && address.setAddress(text);
}

bool isDomain(const QString& text)
{
    static const QRegularExpression name(
        QStringLiteral("^(?=.{1,253}$)([A-Za-z0-9_]([A-Za-z0-9_-]{0,61}[A-Za-z0-9_])?\\.)*"
                       "[A-Za-z0-9_]([A-Za-z0-9_-]{0,61}[A-Za-z0-9_])?\\.?$"));
    return name.match(text).hasMatch();
}

void addOnce(QStringList& list, const QString& value)
{
    if (!list.contains(value))
        list.append(value);
}

} // namespace

TunnelNetwork TunnelNetwork::fromOpenVpnEnvironment(const QByteArray& environment)
{
    // Numbered variables come in the order OpenVPN numbered them, not in text order.
    QMap<int, QString> foreignOptions;
    QMap<QString, QString> dnsServers; // dns_server_N_address_M, sorted by name
    TunnelNetwork network;
    static const QRegularExpression foreign(QStringLiteral("^foreign_option_(\\d+)$"));
    static const QRegularExpression dnsServer(QStringLiteral("^dns_server_\\d+_address_\\d+$"));
    static const QRegularExpression device(QStringLiteral("^[A-Za-z0-9_.-]{1,15}$"));
    for (const QByteArray& line : environment.split('\n')) {
        const int equals = line.indexOf('=');
        if (equals <= 0)
            continue;
        const QString name = QString::fromLatin1(line.left(equals));
        const QString value = QString::fromUtf8(line.mid(equals + 1)).trimmed();
        const QRegularExpressionMatch option = foreign.match(name);
        if (option.hasMatch())
            foreignOptions.insert(option.captured(1).toInt(), value);
        else if (dnsServer.match(name).hasMatch())
            dnsServers.insert(name, value);
        else if (name == QLatin1String("dev") && device.match(value).hasMatch())
            network.device = value;
        else if (name == QLatin1String("ifconfig_ipv6_local") && isAddress(value))
            network.carriesIpv6 = true;
        else if ((name == QLatin1String("trusted_ip") || name == QLatin1String("trusted_ip6")) &&
                 isAddress(value))
            network.serverAddress = value;
    }
    for (const QString& option : qAsConst(foreignOptions)) {
        const QStringList words = option.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.size() != 3 || words.at(0) != QLatin1String("dhcp-option"))
            continue;
        const QString kind = words.at(1).toUpper();
        if ((kind == QLatin1String("DNS") || kind == QLatin1String("DNS6")) &&
            isAddress(words.at(2))) {
            addOnce(network.dnsServers, QHostAddress(words.at(2)).toString());
        } else if ((kind == QLatin1String("DOMAIN") || kind == QLatin1String("DOMAIN-SEARCH") ||
                    kind == QLatin1String("ADAPTER_DOMAIN_SUFFIX")) &&
                   isDomain(words.at(2))) {
            addOnce(network.domains, words.at(2));
        }
    }
    for (const QString& server : qAsConst(dnsServers)) {
        if (isAddress(server))
            addOnce(network.dnsServers, QHostAddress(server).toString());
    }
    return network;
}

} // namespace tavero
