#include "platform/linux/networkmanagerdialup.h"

#include "platform/linux/networkmanagernames.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDebug>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMap>
#include <QThread>
#include <QUuid>

using ConnectionSettings = QMap<QString, QVariantMap>;
using StringMap = QMap<QString, QString>;
Q_DECLARE_METATYPE(ConnectionSettings)

namespace tavero {
namespace {

using namespace networkmanager;

// NMActiveConnectionState.
constexpr uint stateActivated = 2;
constexpr uint stateDeactivated = 4;

struct Plugin {
    const char* serviceType;
    const char* serviceFile;
};
Plugin pluginOf(NetworkManagerDialup::Kind kind)
{
    switch (kind) {
    case NetworkManagerDialup::Kind::IKEv2:
        return {"org.freedesktop.NetworkManager.strongswan", "nm-strongswan-service.name"};
    case NetworkManagerDialup::Kind::L2tp:
        return {"org.freedesktop.NetworkManager.l2tp", "nm-l2tp-service.name"};
    case NetworkManagerDialup::Kind::Pptp:
        break;
    }
    return {"org.freedesktop.NetworkManager.pptp", "nm-pptp-service.name"};
}

// What the Windows entries request, as far as each plugin can say it: MS-CHAPv2 for PPTP and
// L2TP with optional encryption, EAP for IKEv2 with a virtual address; IPv4 and IPv6.
ConnectionSettings settingsFor(NetworkManagerDialup::Kind kind, const QString& host,
                               const QString& user, const QString& password,
                               const QString& preSharedKey)
{
    StringMap data;
    switch (kind) {
    case NetworkManagerDialup::Kind::IKEv2:
        data = {{"address", host},  {"method", "eap"}, {"user", user},
                {"virtual", "yes"}, {"encap", "yes"},  {"password-flags", "0"}};
        break;
    case NetworkManagerDialup::Kind::L2tp:
        data = {{"gateway", host},       {"user", user},        {"password-flags", "0"},
                {"refuse-eap", "yes"},   {"refuse-pap", "yes"}, {"refuse-chap", "yes"},
                {"refuse-mschap", "yes"}};
        if (!preSharedKey.isEmpty()) {
            data.insert("ipsec-enabled", "yes");
            data.insert("ipsec-psk", preSharedKey);
        }
        break;
    case NetworkManagerDialup::Kind::Pptp:
        data = {{"gateway", host},       {"user", user},        {"password-flags", "0"},
                {"refuse-eap", "yes"},   {"refuse-pap", "yes"}, {"refuse-chap", "yes"},
                {"refuse-mschap", "yes"}};
        break;
    }
    QVariantMap vpn{{"service-type", QString::fromLatin1(pluginOf(kind).serviceType)},
                    {"user-name", user},
                    {"data", QVariant::fromValue(data)},
                    {"secrets", QVariant::fromValue(StringMap{{"password", password}})}};
    return {
        {"connection",
         {{"id", NetworkManagerDialup::entryName(kind)},
          {"uuid", NetworkManagerDialup::entryUuid(kind)},
          {"type", "vpn"},
          {"autoconnect", false}}},
        {"vpn", vpn},
        {"ipv4", {{"method", "auto"}}},
        {"ipv6", {{"method", "auto"}}},
    };
}

QString errorText(const QDBusMessage& reply)
{
    return reply.errorName() + QLatin1Char(' ') + reply.errorMessage();
}

} // namespace

NetworkManagerDialup::NetworkManagerDialup(Options options)
    : m_options(std::move(options))
{
    qDBusRegisterMetaType<StringMap>();
    qDBusRegisterMetaType<ConnectionSettings>();
}

QString NetworkManagerDialup::entryName(Kind kind)
{
    switch (kind) {
    case Kind::IKEv2:
        return QStringLiteral("TAVERO IKEv2");
    case Kind::L2tp:
        return QStringLiteral("TAVERO L2TP");
    case Kind::Pptp:
        break;
    }
    return QStringLiteral("TAVERO PPTP");
}

QString NetworkManagerDialup::entryUuid(Kind kind)
{
    static const QUuid tavero(QStringLiteral("{5d0c8a8e-58a1-4c7b-9a55-2f1c3e0d7a10}"));
    return QUuid::createUuidV5(tavero, entryName(kind)).toString(QUuid::WithoutBraces);
}

QDBusMessage NetworkManagerDialup::call(const QString& path, const QString& interface,
                                        const QString& method, const QVariantList& arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return m_options.bus.call(message, QDBus::Block, m_options.callTimeoutMs);
}

bool NetworkManagerDialup::supports(Kind kind) const
{
    return m_options.bus.isConnected() && m_options.bus.interface() != nullptr &&
           m_options.bus.interface()->isServiceRegistered(service).value() &&
           QFileInfo::exists(m_options.pluginDirectory + QLatin1Char('/') +
                             QLatin1String(pluginOf(kind).serviceFile));
}

uint NetworkManagerDialup::activeState(const QString& activePath) const
{
    const QDBusMessage reply =
        call(activePath, propertiesInterface, QStringLiteral("Get"), {activeInterface, "State"});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return stateDeactivated; // gone: NetworkManager gave up on it
    return reply.arguments().constFirst().value<QDBusVariant>().variant().toUInt();
}

bool NetworkManagerDialup::dial(Kind kind, const QString& host, const QString& user,
                                const QString& password, const QString& preSharedKey,
                                QString& detail)
{
    if (!m_options.bus.isConnected() ||
        !m_options.bus.interface()->isServiceRegistered(service).value()) {
        detail = QStringLiteral("NetworkManager is not running");
        return false;
    }
    if (!supports(kind)) {
        detail = QStringLiteral("the NetworkManager plugin %1 is not installed")
                     .arg(QLatin1String(pluginOf(kind).serviceFile));
        return false;
    }
    remove(kind); // one left by an earlier run
    const QDBusMessage added =
        call(settingsPath, settingsInterface, QStringLiteral("AddConnectionUnsaved"),
             {QVariant::fromValue(settingsFor(kind, host, user, password, preSharedKey))});
    if (added.type() != QDBusMessage::ReplyMessage || added.arguments().isEmpty()) {
        detail = QStringLiteral("adding the connection: ") + errorText(added);
        return false;
    }
    const QDBusObjectPath connection = added.arguments().constFirst().value<QDBusObjectPath>();
    const QDBusMessage activated =
        call(managerPath, managerInterface, QStringLiteral("ActivateConnection"),
             {QVariant::fromValue(connection), QVariant::fromValue(QDBusObjectPath("/")),
              QVariant::fromValue(QDBusObjectPath("/"))});
    if (activated.type() != QDBusMessage::ReplyMessage || activated.arguments().isEmpty()) {
        detail = QStringLiteral("activating the connection: ") + errorText(activated);
        remove(kind);
        return false;
    }
    const QString active = activated.arguments().constFirst().value<QDBusObjectPath>().path();
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        const uint state = activeState(active);
        if (state == stateActivated)
            return true;
        if (state >= stateDeactivated || clock.elapsed() > m_options.activationLimitMs) {
            detail = QStringLiteral("NetworkManager could not bring %1 up").arg(entryName(kind));
            remove(kind);
            return false;
        }
        QThread::msleep(50); // a worker thread waiting on another process, not on us
    }
}

bool NetworkManagerDialup::remove(Kind kind)
{
    const QString uuid = entryUuid(kind);
    const QDBusMessage active = call(managerPath, propertiesInterface, QStringLiteral("Get"),
                                     {managerInterface, "ActiveConnections"});
    if (active.type() == QDBusMessage::ReplyMessage && !active.arguments().isEmpty()) {
        const QDBusArgument paths =
            active.arguments().constFirst().value<QDBusVariant>().variant().value<QDBusArgument>();
        for (const QDBusObjectPath& path : qdbus_cast<QList<QDBusObjectPath>>(paths)) {
            const QDBusMessage id = call(path.path(), propertiesInterface, QStringLiteral("Get"),
                                         {activeInterface, "Uuid"});
            if (id.type() == QDBusMessage::ReplyMessage && !id.arguments().isEmpty() &&
                id.arguments().constFirst().value<QDBusVariant>().variant().toString() == uuid)
                call(managerPath, managerInterface, QStringLiteral("DeactivateConnection"),
                     {QVariant::fromValue(path)});
        }
    }
    const QDBusMessage found =
        call(settingsPath, settingsInterface, QStringLiteral("GetConnectionByUuid"), {uuid});
    if (found.type() != QDBusMessage::ReplyMessage || found.arguments().isEmpty())
        return true; // none of ours
    const QDBusMessage deleted =
        call(found.arguments().constFirst().value<QDBusObjectPath>().path(), connectionInterface,
             QStringLiteral("Delete"));
    if (deleted.type() != QDBusMessage::ReplyMessage) {
        qWarning().noquote() << "Could not delete" << entryName(kind) << errorText(deleted);
        return false;
    }
    return true;
}

bool NetworkManagerDialup::hangUp()
{
    if (!m_options.bus.isConnected() || m_options.bus.interface() == nullptr ||
        !m_options.bus.interface()->isServiceRegistered(service).value())
        return true; // without NetworkManager nothing of ours can be up
    bool all = true;
    for (const Kind kind : {Kind::Pptp, Kind::L2tp, Kind::IKEv2})
        all = remove(kind) && all;
    return all;
}

} // namespace tavero
