#include "platform/linux/tunnelresolver.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const QString resolvedService = QStringLiteral("org.freedesktop.resolve1");

// resolved's (iay) server and (sb) domain entries.
template <typename First, typename Second>
struct ResolvedPair {
    First first;
    Second second;
};
using ResolvedAddress = ResolvedPair<int, QByteArray>; // family, address bytes
using ResolvedDomain = ResolvedPair<QString, bool>;    // name, routing only

} // namespace

Q_DECLARE_METATYPE(ResolvedAddress)
Q_DECLARE_METATYPE(ResolvedDomain)

namespace {

template <typename First, typename Second>
QDBusArgument& operator<<(QDBusArgument& argument, const ResolvedPair<First, Second>& value)
{
    argument.beginStructure();
    argument << value.first << value.second;
    argument.endStructure();
    return argument;
}
template <typename First, typename Second>
const QDBusArgument& operator>>(const QDBusArgument& argument, ResolvedPair<First, Second>& value)
{
    argument.beginStructure();
    argument >> value.first >> value.second;
    argument.endStructure();
    return argument;
}

// One call to resolved's manager; an empty string on success, else the error.
QString callResolved(const QString& busAddress, const QString& method,
                     const QVariantList& arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(resolvedService, QStringLiteral("/org/freedesktop/resolve1"),
                                       QStringLiteral("org.freedesktop.resolve1.Manager"), method);
    call.setArguments(arguments);
    QDBusConnection bus = busAddress.isEmpty()
                              ? QDBusConnection::systemBus()
                              : QDBusConnection::connectToBus(busAddress, busAddress);
    const QDBusMessage reply = bus.call(call, QDBus::Block, 10000);
    return reply.type() == QDBusMessage::ErrorMessage
               ? method + QStringLiteral(": ") + reply.errorMessage()
               : QString();
}

QByteArray readAll(const QString& path, bool& ok)
{
    QFile file(path);
    ok = file.open(QIODevice::ReadOnly);
    return ok ? file.readAll() : QByteArray();
}

// In place (truncate and write), never by renaming over it: the file may be a mount point, as in
// a network namespace made by `ip netns exec`.
bool writeInPlace(const QString& path, const QByteArray& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                        QFileDevice::ReadOther);
    return file.write(text) == text.size() && file.flush();
}

} // namespace

namespace tavero {

TunnelResolver::Options TunnelResolver::systemOptions()
{
    Options options;
    const QString file = qEnvironmentVariable("TAVERO_RESOLV_CONF");
    if (!file.isEmpty()) {
        options.resolvConfPath = file;
        return options;
    }
    const QDBusConnection bus = QDBusConnection::systemBus();
    options.useResolved =
        bus.isConnected() && bus.interface()->isServiceRegistered(resolvedService).value();
    return options;
}

TunnelResolver::TunnelResolver(Options options)
    : m_options(std::move(options))
{}

TunnelResolver::~TunnelResolver()
{
    release();
}

QByteArray TunnelResolver::fileText(const TunnelNetwork& network)
{
    QByteArray text =
        "# Written by Tavero while its VPN tunnel is up; the previous file comes back "
        "when the tunnel goes.\n";
    // The C library reads at most three servers.
    for (const QString& server : network.dnsServers.mid(0, 3))
        text += "nameserver " + server.toLatin1() + '\n';
    if (!network.domains.isEmpty())
        text += "search " + network.domains.join(QLatin1Char(' ')).toLatin1() + '\n';
    return text;
}

OperationResult TunnelResolver::apply(const TunnelNetwork& network, int interfaceIndex,
                                      const std::function<bool(const QJsonObject&)>& keepRecord)
{
    if (!release())
        return OperationResult(QStringLiteral("the previous tunnel's DNS settings are still set"));
    if (network.dnsServers.isEmpty()) {
        qWarning("The VPN server named no DNS servers; name look-ups keep the system's resolver");
        return {};
    }
    return m_options.useResolved ? applyThroughResolved(network, interfaceIndex, keepRecord)
                                 : applyToFile(network, keepRecord);
}

OperationResult
TunnelResolver::applyThroughResolved(const TunnelNetwork& network, int interfaceIndex,
                                     const std::function<bool(const QJsonObject&)>& keepRecord)
{
    qDBusRegisterMetaType<ResolvedAddress>();
    qDBusRegisterMetaType<QList<ResolvedAddress>>();
    qDBusRegisterMetaType<ResolvedDomain>();
    qDBusRegisterMetaType<QList<ResolvedDomain>>();
    if (interfaceIndex <= 0)
        return OperationResult(QStringLiteral("the tunnel's device is unknown"));
    QList<ResolvedAddress> servers;
    for (const QString& server : network.dnsServers) {
        const QHostAddress address(server);
        if (address.protocol() == QAbstractSocket::IPv4Protocol) {
            const quint32 value = address.toIPv4Address();
            servers << ResolvedAddress{AF_INET, QByteArray(1, char(value >> 24)) +
                                                    char(value >> 16) + char(value >> 8) +
                                                    char(value)};
        } else {
            const Q_IPV6ADDR value = address.toIPv6Address();
            servers << ResolvedAddress{AF_INET6,
                                       QByteArray(reinterpret_cast<const char*>(value.c), 16)};
        }
    }
    QList<ResolvedDomain> domains;
    for (const QString& domain : network.domains)
        domains << ResolvedDomain{domain, false};
    // "~.": every name is routed to this link, none to the physical ones.
    domains << ResolvedDomain{QStringLiteral("."), true};
    // The link keeps its settings as long as it lives: an IKEv2 device outlives a crashed client.
    const QJsonObject record{{QStringLiteral("resolvedLink"), interfaceIndex},
                             {QStringLiteral("device"), network.device},
                             {QStringLiteral("bus"), m_options.busAddress}};
    if (!keepRecord(record))
        return OperationResult(QStringLiteral("cannot keep a record of the DNS settings"));
    m_record = record;
    const QString& bus = m_options.busAddress;
    QString error = callResolved(bus, QStringLiteral("SetLinkDNS"),
                                 {interfaceIndex, QVariant::fromValue(servers)});
    if (error.isEmpty()) {
        error = callResolved(bus, QStringLiteral("SetLinkDomains"),
                             {interfaceIndex, QVariant::fromValue(domains)});
    }
    if (error.isEmpty())
        error = callResolved(bus, QStringLiteral("SetLinkDefaultRoute"), {interfaceIndex, true});
    if (!error.isEmpty()) {
        release();
        return OperationResult(QStringLiteral("systemd-resolved refused the tunnel's DNS: ") +
                               error);
    }
    qInfo().noquote() << "DNS through systemd-resolved on link" << interfaceIndex << ":"
                      << network.dnsServers.join(QStringLiteral(", "));
    return {};
}

OperationResult
TunnelResolver::applyToFile(const TunnelNetwork& network,
                            const std::function<bool(const QJsonObject&)>& keepRecord)
{
    const QString path = m_options.resolvConfPath;
    const QFileInfo info(path);
    QJsonObject record{{QStringLiteral("path"), path}};
    if (info.isSymLink()) {
        // The link's own text (often relative), so it comes back exactly.
        const QByteArray link = QFile::encodeName(path);
        char target[4096];
        const ssize_t length = ::readlink(link.constData(), target, sizeof target);
        if (length <= 0 || length == sizeof target)
            return OperationResult(QStringLiteral("cannot read the link ") + path);
        record.insert(QStringLiteral("link"), QFile::decodeName(QByteArray(target, int(length))));
    } else if (info.exists()) {
        bool ok = false;
        const QByteArray original = readAll(path, ok);
        if (!ok)
            return OperationResult(QStringLiteral("cannot read ") + path);
        record.insert(QStringLiteral("original"), QString::fromLatin1(original.toBase64()));
    }
    const QByteArray text = fileText(network);
    record.insert(QStringLiteral("written"), QString::fromLatin1(text.toBase64()));
    if (!keepRecord(record))
        return OperationResult(QStringLiteral("cannot keep a record of ") + path);
    m_record = record;
    // A link (to a file some other program manages) is replaced by a file of our own.
    if ((info.isSymLink() && !QFile::remove(path)) || !writeInPlace(path, text)) {
        release();
        return OperationResult(QStringLiteral("cannot write ") + path);
    }
    qInfo().noquote() << "DNS through" << path << ":"
                      << network.dnsServers.join(QStringLiteral(", "));
    return {};
}

bool TunnelResolver::release()
{
    if (m_record.isEmpty())
        return true;
    const bool done = restore(m_record);
    m_record = {};
    return done;
}

bool TunnelResolver::restore(const QJsonObject& record)
{
    if (record.contains(QStringLiteral("resolvedLink"))) {
        const int link = record.value(QStringLiteral("resolvedLink")).toInt();
        const QByteArray device = record.value(QStringLiteral("device")).toString().toLocal8Bit();
        // A link that is gone took its settings with it, and its number may name another now.
        if (int(::if_nametoindex(device.constData())) != link)
            return true;
        const QString error = callResolved(record.value(QStringLiteral("bus")).toString(),
                                           QStringLiteral("RevertLink"), {link});
        if (!error.isEmpty())
            qCritical().noquote() << "systemd-resolved:" << error;
        return error.isEmpty();
    }
    const QString path = record.value(QStringLiteral("path")).toString();
    if (path.isEmpty())
        return true;
    const QByteArray written =
        QByteArray::fromBase64(record.value(QStringLiteral("written")).toString().toLatin1());
    bool ok = false;
    const QByteArray current = readAll(path, ok);
    if (QFileInfo(path).isSymLink() || (ok && current != written)) {
        qWarning().noquote() << path << "was changed by another program; it is left as it is";
        return true;
    }
    bool restored = false;
    if (record.contains(QStringLiteral("link"))) {
        const QByteArray link = QFile::encodeName(path);
        const QByteArray target =
            QFile::encodeName(record.value(QStringLiteral("link")).toString());
        restored =
            (!ok || QFile::remove(path)) && ::symlink(target.constData(), link.constData()) == 0;
    } else if (record.contains(QStringLiteral("original"))) {
        restored = writeInPlace(
            path,
            QByteArray::fromBase64(record.value(QStringLiteral("original")).toString().toLatin1()));
    } else {
        restored = !ok || QFile::remove(path); // there was none
    }
    if (restored)
        qInfo().noquote() << path << "restored";
    else
        qCritical().noquote() << "Cannot restore" << path;
    return restored;
}

} // namespace tavero
