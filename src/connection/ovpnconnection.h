#pragma once

#include "api/operationresult.h"

#include <QProcess>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>

class IServerApi;
class QEventLoop;
struct VpnServerInformation;

namespace tavero {

class IPlatform;

// The waits of a connect. The product uses the defaults; tests shorten them. Elapsed time is
// counted in whole `tick`s, and a limit is passed when that count exceeds it ("more than 20
// whole seconds").
struct OvpnConnectionLimits {
    std::chrono::milliseconds connectLimit{20000}; // one run, and the whole retry loop
    std::chrono::milliseconds silenceLimit{9000};  // until the first output of a run
    std::chrono::milliseconds wait{500};           // first pause before restarting an exited run
    std::chrono::milliseconds slice{100};          // longest stretch without event processing
    std::chrono::milliseconds tick{1000};          // unit in which elapsed time is counted
};

// Brings an OpenVPN tunnel up and down by running the OpenVPN client program ("openvpn", on
// Windows "openvpn.exe", in the program directory, by default "bin" beside the executable) on a
// configuration generated from a fixed template, the server's host and the account's certificates.
//
// Main thread only. A connect waits in a nested event loop that ends at the first decisive line
// of OpenVPN's output (success or error), when OpenVPN ends, or at a limit, so the user interface
// stays alive meanwhile. At most one OpenVPN process runs per driver: a new attempt kills the
// previous one first, and a failed attempt kills its own. After a successful connect the process
// keeps running (the tunnel) until `disconnect()`; the configuration file is gone by then.
//
// Re-entry through the nested loops is harmless: `disconnect()` or a new connect called from
// inside a wait supersedes the waiting attempt, which then returns a failure without touching
// the driver again; the process is detached from the driver before any wait for its end. The
// configuration file (owner-only) and a record of the process live in RuntimeDirectory::path().
//
// When the platform applies a tunnel's network settings itself (IPlatform::appliesTunnelNetwork),
// OpenVPN also gets "--script-security 2 --up ..." on its command line (the configuration text
// stays as the template makes it): its "up" step writes the variables OpenVPN defines (pushed
// DNS servers, device, IPv6 address) to a file beside the configuration, and a connect succeeds
// only once the platform has applied them. Every stop of the tunnel releases them.
//
// Failure messages (translated in context "QObject"; the English texts are those of the catalogue):
//   "label.can_not_create_config_for_open_vpn"
//       Failed to create configuration file for Open VPN
//   "warning.open_vpn_running_fails_check_apps"
//       Unable to run Open VPN connection process. Please check the installed software
//   "warning.open_vpn_does_not_exists_try_another_protocol"
//       Unable to connect with Open VPN. Try to another protocol
//   "warning.open_vpn_server_does_not_respond"
//       OpenVPN server does not respond
//   "warning.open_vpn_connection_time_out"       (%1 = "TCP" or "UDP")
//       Connection timeout for Open VPN %1
//   "warning.can_not_open_vpn_check_is_admin_granted"
//       Unable to create Open VPN connection. Check premissions. The program must be open as an
//       administrator
//   "warning.open_vpn_server_data_rejected"
//       The server's connection data were rejected as unsafe. Try another server or contact
//       support
// Every failure has code `General`.
class OvpnConnection {
public:
    enum ConnectionType { Tcp = 0, Udp = 1 };

    using Limits = OvpnConnectionLimits;

    // `programDirectory` holds the OpenVPN program; empty means "bin" beside the executable.
    // `platform`, when given, applies the tunnel's pushed network settings (see above).
    explicit OvpnConnection(IServerApi& api, QString programDirectory = {}, Limits limits = {},
                            IPlatform* platform = nullptr);
    ~OvpnConnection(); // kills the process and waits a bounded time, without processing events
    OvpnConnection(const OvpnConnection&) = delete;
    OvpnConnection& operator=(const OvpnConnection&) = delete;

    OperationResult connectUdp(const VpnServerInformation& server);
    OperationResult connectTcp(const VpnServerInformation& server);

    // Fetches the account's certificates, refuses a host or certificate text that could smuggle
    // directives into the configuration (nothing is written, no process starts), fills the
    // template and runs it.
    OperationResult connect(const VpnServerInformation& server, ConnectionType type);

    // Fills the template for `type` into `out`, substituting all five values in one pass (a "%" in
    // any of them stays literal). Checks nothing and always succeeds.
    OperationResult generateConfigText(const ConnectionType& type, const QString& host,
                                       const QString& ca, const QString& cert, const QString& key,
                                       QString& out);

    // Runs a complete configuration text (trusted: the caller has checked what went into it),
    // starting a fresh run whenever OpenVPN exits by itself, after a pause that doubles from
    // `wait`, until success, a failure that is not worth retrying, or more than `connectLimit`
    // since the connect began (then the time-out for `typeText`). The configuration file is
    // deleted, and on failure the process is stopped, before it returns.
    OperationResult connect(const QString& configText, const QString& typeText);

    // 0: the tunnel is up; 1: OpenVPN reported a failure; 2: keep waiting. An IPv6 set-up error
    // alone is not a failure.
    static int analyseProcessOutput(const QString& output);

    // "TCP" for Tcp, "UDP" for anything else.
    static QString generateConnectionTypeString(ConnectionType type);

    // Kills the process (if any), waits a bounded time for it to end (processing events) and
    // deletes the configuration file. Ends any connect waiting further down the stack. Safe when
    // nothing runs; always succeeds.
    OperationResult disconnect();

    // Removes the configuration file of the current attempt (a missing file is no error).
    void deleteConfigFile();

    // Path of the configuration file of the running attempt; empty when none.
    QString configFilePath() const { return m_configFilePath; }
    // Absolute path of the OpenVPN program this driver starts.
    QString programPath() const;
    // The running OpenVPN process, or null.
    const QProcess* process() const { return m_process.get(); }

    // Called when OpenVPN ends by itself after bringing its tunnel up: the tunnel is gone,
    // whatever an IP check still in flight may say later. Not called for a process the driver
    // stops. It runs inside the process's own signal, so it must not call into the driver.
    void setTunnelEndedHandler(std::function<void()> handler)
    {
        m_tunnelEnded = std::move(handler);
    }

private:
    // How one run of OpenVPN ended.
    enum class Outcome {
        Up,
        Failed,
        Exited,
        Silent,
        TooLong,
        NoFile,
        NotStarted,
        Lost,
        Superseded
    };

    OperationResult forceConnect(const QString& configText, const QString& typeText,
                                 quint64 attempt);
    Outcome runOnce(const QString& configText, quint64 attempt, QString& output);
    bool writeConfigFile(const QString& configText);
    QString environmentFilePath() const;
    OperationResult applyTunnelNetwork();
    // Runs `loop` as the wait of `attempt`; false when a later connect or disconnect superseded
    // the attempt meanwhile (the caller must then leave the driver's members alone).
    bool waitInLoop(QEventLoop& loop, quint64 attempt);
    bool pause(std::chrono::milliseconds length, quint64 attempt);
    quint64 supersede();
    // Detaches the process from the driver, kills it and waits (bounded) for its end, in a
    // nested event loop when `keepEventsRunning`.
    void stopProcess(bool keepEventsRunning);
    QString recordName(qint64 pid) const;
    std::chrono::milliseconds deadline(std::chrono::milliseconds limit) const;
    bool exceeded(std::chrono::milliseconds elapsed, std::chrono::milliseconds limit) const;

    IServerApi& m_api;
    QString m_programDirectory;
    Limits m_limits;
    IPlatform* m_platform = nullptr;
    QString m_entryPrefix; // names this driver's entries in the runtime directory
    QString m_configFilePath;
    std::unique_ptr<QProcess> m_process;
    qint64 m_processId = 0;
    quint64 m_attempt = 0;        // bumped by every connect and disconnect
    QEventLoop* m_wait = nullptr; // the wait of the current attempt, ended when it is superseded
    std::function<void()> m_tunnelEnded;
};

} // namespace tavero
