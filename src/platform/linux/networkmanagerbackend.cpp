#include "platform/linux/networkmanagerbackend.h"

#include "platform/linux/networkmanagernames.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDebug>
#include <algorithm>

namespace tavero {
namespace {

using namespace networkmanager;
const QString unknownConnectionError =
    QStringLiteral("org.freedesktop.NetworkManager.Settings.InvalidConnection");

// NMActiveConnectionState: 1 activating, 2 activated, 3 deactivating, 4 deactivated.
constexpr uint stateDeactivating = 3;

NetworkSwitchStatus dbusFailure(const QDBusMessage& reply, const QString& what)
{
    const QDBusError error(reply);
    return NetworkSwitchStatus::failure(int(error.type()), what + QStringLiteral(": ") +
                                                               error.name() + QStringLiteral(" ") +
                                                               error.message());
}

// Values inside variants arrive as QDBusArgument unless QtDBus knows their type already.
template <typename T>
T fromVariant(const QVariant& value)
{
    if (value.userType() == qMetaTypeId<QDBusArgument>())
        return qdbus_cast<T>(value.value<QDBusArgument>());
    return value.value<T>();
}

bool isSwitchedOn(uint state)
{
    return state < stateDeactivating;
}

} // namespace

NetworkManagerBackend::NetworkManagerBackend(const QDBusConnection& bus, int timeoutMs)
    : m_bus(bus)
    , m_timeoutMs(timeoutMs)
{}

bool NetworkManagerBackend::isRunning(const QDBusConnection& bus)
{
    if (!bus.isConnected() || bus.interface() == nullptr)
        return false;
    const QDBusReply<bool> registered = bus.interface()->isServiceRegistered(service);
    return registered.isValid() && registered.value();
}

QString NetworkManagerBackend::name() const
{
    return QStringLiteral("NetworkManager");
}

NetworkSwitchStatus NetworkManagerBackend::open()
{
    if (!m_bus.isConnected()) {
        const QDBusError error = m_bus.lastError();
        return NetworkSwitchStatus::failure(error.isValid() ? int(error.type())
                                                            : int(QDBusError::Disconnected),
                                            QStringLiteral("system bus: ") + error.message());
    }
    if (!isRunning(m_bus))
        return NetworkSwitchStatus::failure(int(QDBusError::ServiceUnknown),
                                            service + QStringLiteral(" is not running"));
    return {};
}

void NetworkManagerBackend::close() {}

QDBusMessage NetworkManagerBackend::call(const QString& path, const QString& interface,
                                         const QString& method, const QVariantList& arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, m_timeoutMs);
}

NetworkSwitchStatus
NetworkManagerBackend::activeConnections(QVector<ActiveConnection>& connections) const
{
    const QDBusMessage reply = call(managerPath, propertiesInterface, QStringLiteral("Get"),
                                    {managerInterface, QStringLiteral("ActiveConnections")});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return dbusFailure(reply, QStringLiteral("active connections"));
    const auto paths = fromVariant<QList<QDBusObjectPath>>(
        reply.arguments().constFirst().value<QDBusVariant>().variant());
    for (const QDBusObjectPath& path : paths) {
        const QDBusMessage properties =
            call(path.path(), propertiesInterface, QStringLiteral("GetAll"), {activeInterface});
        if (properties.type() != QDBusMessage::ReplyMessage || properties.arguments().isEmpty()) {
            // Gone between the two calls: it was going down anyway.
            qDebug() << "NetworkManager active connection vanished:" << path.path();
            continue;
        }
        const auto values = fromVariant<QVariantMap>(properties.arguments().constFirst());
        connections.append({path.path(), values.value(QStringLiteral("Uuid")).toString(),
                            values.value(QStringLiteral("Id")).toString(),
                            values.value(QStringLiteral("Type")).toString(),
                            values.value(QStringLiteral("State")).toUInt()});
    }
    return {};
}

NetworkSwitchStatus NetworkManagerBackend::listSwitchedOn(QVector<NetworkConnection>& connections)
{
    QVector<ActiveConnection> active;
    const NetworkSwitchStatus status = activeConnections(active);
    if (!status.ok())
        return status;
    QStringList seen;
    for (const ActiveConnection& connection : qAsConst(active)) {
        if (connection.type == QLatin1String("loopback") || connection.uuid.isEmpty() ||
            !isSwitchedOn(connection.state) || seen.contains(connection.uuid))
            continue;
        seen << connection.uuid;
        connections.append({connection.uuid, connection.id, connection.path});
    }
    return {};
}

NetworkSwitchStatus NetworkManagerBackend::profilePath(const QString& uuid, QString& path) const
{
    path.clear();
    const QDBusMessage reply =
        call(settingsPath, settingsInterface, QStringLiteral("GetConnectionByUuid"), {uuid});
    if (reply.type() == QDBusMessage::ErrorMessage && reply.errorName() == unknownConnectionError)
        return {};
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return dbusFailure(reply, uuid);
    path = reply.arguments().constFirst().value<QDBusObjectPath>().path();
    return {};
}

NetworkSwitchStatus NetworkManagerBackend::stateOf(const QString& id, State& state)
{
    QString path;
    NetworkSwitchStatus status = profilePath(id, path);
    if (!status.ok())
        return status;
    if (path.isEmpty()) {
        state = State::Missing;
        return {};
    }
    QVector<ActiveConnection> active;
    status = activeConnections(active);
    if (!status.ok())
        return status;
    state = std::any_of(active.cbegin(), active.cend(),
                        [&id](const ActiveConnection& connection) {
                            return connection.uuid == id && isSwitchedOn(connection.state);
                        })
                ? State::On
                : State::Off;
    return {};
}

NetworkSwitchStatus NetworkManagerBackend::switchOff(const NetworkConnection& connection)
{
    const QDBusMessage reply =
        call(managerPath, managerInterface, QStringLiteral("DeactivateConnection"),
             {QVariant::fromValue(QDBusObjectPath(connection.handle))});
    if (reply.type() != QDBusMessage::ReplyMessage)
        return dbusFailure(reply, connection.label);
    return {};
}

NetworkSwitchStatus NetworkManagerBackend::switchOn(const QString& id,
                                                    const QJsonArray& /*restore*/)
{
    // NetworkManager brings a profile's routes back itself.
    QString path;
    const NetworkSwitchStatus status = profilePath(id, path);
    if (!status.ok())
        return status;
    if (path.isEmpty())
        return NetworkSwitchStatus::failure(int(QDBusError::InvalidArgs),
                                            id + QStringLiteral(": no such connection"));
    // "/" lets NetworkManager pick the device and the object to use.
    const QVariant any = QVariant::fromValue(QDBusObjectPath(QStringLiteral("/")));
    const QDBusMessage reply =
        call(managerPath, managerInterface, QStringLiteral("ActivateConnection"),
             {QVariant::fromValue(QDBusObjectPath(path)), any, any});
    if (reply.type() != QDBusMessage::ReplyMessage)
        return dbusFailure(reply, id);
    return {};
}

} // namespace tavero
