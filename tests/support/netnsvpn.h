#pragma once

#include "api/accountinfogettingresult.h"
#include "api/vpnserverinformation.h"

#include <QProcess>
#include <QString>
#include <QStringList>

namespace tavero::test {

// Runs tests/e2e/netns-vpn: two network namespaces joined by a veth pair, a real OpenVPN server
// (UDP and TCP on 1194) in one, and a program directory whose "openvpn" runs the real openvpn in
// the other. Everything is torn down when this object goes (the script also tears down when its
// standard input closes, so a crashed caller leaves nothing behind).
class NetnsVpn {
public:
    enum class Outcome { Running, Unsupported, Failed };

    explicit NetnsVpn(QString scriptPath);
    ~NetnsVpn();
    NetnsVpn(const NetnsVpn&) = delete;
    NetnsVpn& operator=(const NetnsVpn&) = delete;

    // Starts the script on `workDirectory` and waits until it reports ready. Unsupported: the
    // machine lacks root, /dev/net/tun, `ip netns` or openvpn; `reason()` says which.
    Outcome start(const QString& workDirectory, int timeoutMs = 60000);
    QString reason() const { return m_reason; }

    QString clientNamespace() const { return value(QStringLiteral("client")); }
    QString host() const { return value(QStringLiteral("host")); }
    QString programDirectory() const { return value(QStringLiteral("bin")); }
    // Any value of the script's READY line ("lan-dns-ns", "tunnel-dns", ...).
    QString value(const QString& key) const;
    // Text of a file of the development PKI ("ca.pem", "client1.pem", "client1.key", ...).
    QString pkiText(const QString& name) const;

    // The OpenVPN server's log for "udp" or "tcp" (the last `lines` lines).
    QString serverLog(const QString& protocol, int lines = 40) const;

    // The account of the PKI's first client (CA, certificate, key), as the service would send it.
    AccountInfoGettingResult accountInfo() const;
    // The server record of the OpenVPN server ("netns", with an OpenVPN configuration).
    VpnServerInformation server() const;

    // Runs a command inside the client namespace; its exit status (-1 when it could not run).
    int runInClient(const QStringList& command, QString* output = nullptr) const;
    // Names of the client namespace's tun devices ("tun0", ...).
    QStringList clientTunDevices() const;

    void stop();

private:
    QString m_scriptPath;
    QString m_workDirectory;
    QProcess m_script;
    QString m_ready;
    QString m_reason;
};

} // namespace tavero::test
