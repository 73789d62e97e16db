#pragma once

#include <QJsonArray>
#include <QString>
#include <QVector>

namespace tavero {

// One network connection the kill switch can switch: an interface, or a NetworkManager profile.
struct NetworkConnection {
    QString id;     // what is remembered across passes: interface name or connection UUID
    QString label;  // for the log
    QString handle; // the backend's reference to the live object (interface index, D-Bus path)
    // What the backend needs to give the connection back as it was (an interface's routes). It is
    // written to disk with the id before anything is switched off, so it outlives a crash.
    QJsonArray restore;
};

// Outcome of one backend step. Code 0 is success; any other value is the backend's own error code
// (a libnl error, a D-Bus error type), which reaches the user only when open() fails.
struct NetworkSwitchStatus {
    int code = 0;
    QString detail;

    bool ok() const { return code == 0; }
    static NetworkSwitchStatus failure(int code, const QString& detail)
    {
        return NetworkSwitchStatus{code == 0 ? -1 : code, detail};
    }
};

// The mechanism that switches the machine's network connections off and on. The rules about what
// is remembered and what a pass reports live in LinuxPlatform; a backend only lists and switches.
// Every pass is open() ... close() on the calling thread.
class NetworkSwitchBackend {
public:
    enum class State {
        Missing, // no such connection any more
        Off,     // exists and is switched off
        On,      // up, coming up, or up without a carrier
    };

    virtual ~NetworkSwitchBackend() = default;

    // "NetworkManager" or "interfaces", for the log.
    virtual QString name() const = 0;
    // Reaches the manager for one pass.
    virtual NetworkSwitchStatus open() = 0;
    virtual void close() = 0;
    // Appends, in the system's order, every connection that is not switched off (loopback never),
    // each with what its switch-on will need.
    virtual NetworkSwitchStatus listSwitchedOn(QVector<NetworkConnection>& connections) = 0;
    // The current state of a remembered connection.
    virtual NetworkSwitchStatus stateOf(const QString& id, State& state) = 0;
    virtual NetworkSwitchStatus switchOff(const NetworkConnection& connection) = 0;
    // `restore` is what listSwitchedOn gave the connection (read back from disk after a crash).
    virtual NetworkSwitchStatus switchOn(const QString& id, const QJsonArray& restore) = 0;
};

} // namespace tavero
