#pragma once

#include "api/operationresult.h"

#include <QProcess>
#include <QString>
#include <chrono>
#include <memory>

class IServerApi;
struct VpnServerInformation;

namespace tavero {

// The waits of a connect. The product uses the defaults; tests shorten them. Elapsed time is
// counted in whole `tick`s, and a limit is passed when that count exceeds it ("more than 20
// whole seconds").
struct OvpnConnectionLimits {
    std::chrono::milliseconds connectLimit{20000}; // one run, and the whole retry loop
    std::chrono::milliseconds silenceLimit{9000};  // until the first output of a run
    std::chrono::milliseconds wait{500};           // between two reads of the output
    std::chrono::milliseconds slice{100};          // longest stretch without event processing
    std::chrono::milliseconds tick{1000};          // unit in which elapsed time is counted
};

// Brings an OpenVPN tunnel up and down by running the OpenVPN client program ("openvpn", on
// Windows "openvpn.exe", in the program directory, by default "bin" beside the executable) on a
// configuration generated from a fixed template, the server's host and the account's certificates.
//
// Main thread only. The waits keep the event loop running in short slices, so the user interface
// stays alive while a connect is under way. At most one OpenVPN process runs per driver: a new
// attempt kills the previous one first. After a successful connect the process keeps running
// (the tunnel) until `disconnect()`; the configuration file is gone by then.
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
    explicit OvpnConnection(IServerApi& api, QString programDirectory = {}, Limits limits = {});
    ~OvpnConnection(); // disconnects
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
    // retrying while OpenVPN exits by itself, then deletes the configuration file.
    OperationResult connect(const QString& configText, const QString& typeText);

    // The retry loop: starts a fresh run whenever OpenVPN exits by itself, until success, a
    // failure that is not worth retrying, or more than `connectLimit` since the loop began (then
    // disconnects and reports the time-out for `typeText`).
    OperationResult forceConnect(const QString& configText, const QString& typeText);

    // One run: kills any earlier process, writes the configuration file (owner-only), starts
    // OpenVPN and classifies its output until success, failure or a limit. `retry` is set when
    // OpenVPN exited by itself.
    OperationResult tryConnectOneTime(const QString& configText, const QString& typeText,
                                      bool& retry);

    // 0: the tunnel is up; 1: OpenVPN reported a failure; 2: keep waiting. An IPv6 set-up error
    // alone is not a failure.
    static int analyseProcessOutput(const QString& output);

    // "TCP" for Tcp, "UDP" for anything else.
    static QString generateConnectionTypeString(ConnectionType type);

    // Kills the process (if any), waits for it to end and deletes the configuration file. Safe
    // when nothing runs; always succeeds.
    OperationResult disconnect();

    // Removes the configuration file of the current attempt (a missing file is no error).
    void deleteConfigFile();

    // Path of the configuration file of the running attempt; empty when none.
    QString configFilePath() const { return m_configFilePath; }
    // Absolute path of the OpenVPN program this driver starts.
    QString programPath() const;
    // The running OpenVPN process, or null.
    const QProcess* process() const { return m_process.get(); }

private:
    bool exceeded(std::chrono::milliseconds elapsed, std::chrono::milliseconds limit) const;

    IServerApi& m_api;
    QString m_programDirectory;
    Limits m_limits;
    QString m_configFilePath;
    std::unique_ptr<QProcess> m_process;
};

} // namespace tavero
