#pragma once

#include <QHostAddress>
#include <QString>
#include <QStringList>
#include <sys/types.h>

namespace tavero {

// Where the IKEv2 tunnel's programs and private directory are.
struct StrongswanPaths {
    QString stateDirectory = QStringLiteral("/run/tavero/ikev2");
    QString charon = QStringLiteral("/usr/lib/ipsec/charon");
    QString swanctl = QStringLiteral("/usr/sbin/swanctl");
};

// An IKEv2 tunnel made by a charon (strongSwan) of the client's own, the way the OpenVPN driver
// runs openvpn: configuration in a private directory (0700) that holds nothing else, the daemon
// started by us and stopped by us.
//
// charon runs in a mount namespace of its own whose /run is the private directory, so its
// compiled-in pid file and its control (vici) socket never meet a system charon's; with random
// IKE ports and routes confined to a table only marked packets reach, it coexists with one.
// Kernel-libipsec does ESP in user space over a TUN device (this kernel needs no ESP support);
// the device is the tunnel's adapter. Routing is left to the caller. Authentication: EAP-MSCHAPv2
// with the account's VPN user name and password; the server proves itself with a certificate
// for its host name or address, issued by a CA of the system's trust store or TAVERO_CA_FILE.
//
// Needs CAP_SYS_ADMIN (mount namespace) and CAP_NET_ADMIN. Blocking; one tunnel at a time.
class StrongswanTunnel {
public:
    using Paths = StrongswanPaths;

    explicit StrongswanTunnel(Paths paths = {});
    ~StrongswanTunnel(); // stops
    StrongswanTunnel(const StrongswanTunnel&) = delete;
    StrongswanTunnel& operator=(const StrongswanTunnel&) = delete;

    // Brings the tunnel up to `host`. On failure nothing of ours runs any more and `detail` says
    // why (for the log).
    bool start(const QString& host, const QString& user, const QString& password, QString& detail);
    // Hangs up, stops charon and removes the private directory's contents. Safe when nothing runs.
    void stop();

    // The TUN device of the running tunnel ("ipsecN"); empty when none.
    QString device() const { return m_device; }
    // The DNS servers the server handed out (its configuration payload), in its order.
    QStringList dnsServers() const;
    // The server's address as dialled.
    QHostAddress serverAddress() const { return m_server; }
    bool isRunning() const { return m_pid > 0; }

    // Stops a charon that an earlier run of the client left behind (its pid file is in
    // `stateDirectory`) and empties the directory.
    static void stopLeftover(const Paths& paths);

private:
    bool prepareDirectory(QString& detail) const;
    bool writeConfiguration(const QString& user, const QString& password, QString& detail) const;
    bool launch(QString& detail);
    bool swanctl(const QStringList& arguments, int timeoutMs, QString& detail) const;
    QString tunDeviceFromLog() const;

    Paths m_paths;
    QString m_host;
    QHostAddress m_server;
    QString m_device;
    pid_t m_pid = -1;
};

} // namespace tavero
