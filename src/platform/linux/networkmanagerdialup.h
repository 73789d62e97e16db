#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

namespace tavero {

// Where NetworkManagerDialup finds NetworkManager and its plugins, and how long it waits.
struct NetworkManagerDialupOptions {
    // Where NetworkManager is looked for (the system bus in the product).
    QDBusConnection bus = QDBusConnection::systemBus();
    // Where the plugins' service files are (nm-<plugin>-service.name).
    QString pluginDirectory = QStringLiteral("/usr/lib/NetworkManager/VPN");
    int callTimeoutMs = 10000;
    // How long an activation may take.
    int activationLimitMs = 60000;
};

// Dial-up through NetworkManager's VPN plugins, as a desktop user may do it: a VPN connection
// named like the Windows phonebook entry ("TAVERO IKEv2", "TAVERO L2TP", "TAVERO PPTP") is added
// unsaved (nothing is written to disk), activated, and on hang-up deactivated and deleted. Each
// kind has one fixed UUID, so a connection left by an earlier run is found and replaced.
//
// Blocking (D-Bus calls with a time limit); runs on the chain's worker thread.
class NetworkManagerDialup {
public:
    enum class Kind { IKEv2, L2tp, Pptp };

    using Options = NetworkManagerDialupOptions;

    explicit NetworkManagerDialup(Options options = Options());

    // NetworkManager runs and the plugin for `kind` is installed.
    bool supports(Kind kind) const;
    // The connection's name and its fixed UUID.
    static QString entryName(Kind kind);
    static QString entryUuid(Kind kind);

    // Adds and activates the connection; false with `detail` (for the log) when NetworkManager or
    // the plugin is missing, or the activation fails. A failed dial leaves no connection behind.
    bool dial(Kind kind, const QString& host, const QString& user, const QString& password,
              const QString& preSharedKey, QString& detail);
    // Deactivates and deletes the connections of all three kinds; true when none is left.
    bool hangUp();

private:
    QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const;
    // Deactivates and deletes the connection of `kind` if it exists.
    bool remove(Kind kind);
    uint activeState(const QString& activePath) const;

    Options m_options;
};

} // namespace tavero
