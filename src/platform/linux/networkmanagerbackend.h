#pragma once

#include "platform/linux/networkswitchbackend.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantList>

namespace tavero {

// Switches NetworkManager connections over D-Bus: active connections are deactivated and
// remembered by UUID; a remembered UUID is activated again with NetworkManager choosing the device.
// The loopback profile is never touched.
class NetworkManagerBackend : public NetworkSwitchBackend {
public:
    static constexpr int defaultTimeoutMs = 10000;

    // `bus` is where NetworkManager is looked for (the system bus in the product).
    explicit NetworkManagerBackend(const QDBusConnection& bus = QDBusConnection::systemBus(),
                                   int timeoutMs = defaultTimeoutMs);

    // NetworkManager's service name is owned on `bus`.
    static bool isRunning(const QDBusConnection& bus);

    QString name() const override;
    NetworkSwitchStatus open() override;
    void close() override;
    NetworkSwitchStatus listSwitchedOn(QVector<NetworkConnection>& connections) override;
    NetworkSwitchStatus stateOf(const QString& id, State& state) override;
    NetworkSwitchStatus switchOff(const NetworkConnection& connection) override;
    NetworkSwitchStatus switchOn(const QString& id, const QJsonArray& restore) override;

private:
    struct ActiveConnection {
        QString path;
        QString uuid;
        QString id;
        QString type;
        uint state = 0;
    };

    QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments) const;
    NetworkSwitchStatus activeConnections(QVector<ActiveConnection>& connections) const;
    // The settings path of the profile with `uuid`; an empty path (and success) when none exists.
    NetworkSwitchStatus profilePath(const QString& uuid, QString& path) const;

    QDBusConnection m_bus;
    int m_timeoutMs;
};

} // namespace tavero
