#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tavero {

// What a VPN server told the client about the tunnel's network: the device it runs on, the DNS
// servers and search domains it provides, and whether it carries IPv6. Filled from the variables
// OpenVPN hands to its "up" program.
struct TunnelNetwork {
    QString device;           // "tun0"; empty when unknown
    QStringList dnsServers;   // IPv4 and IPv6 addresses, in the order pushed, without duplicates
    QStringList domains;      // search domains, in the order pushed
    bool carriesIpv6 = false; // the tunnel has an IPv6 address of its own
    QString serverAddress;    // the address OpenVPN reaches the server at

    // Reads `env` output ("NAME=value" lines) of OpenVPN's "up" program. Values that are not a
    // valid address or domain name are dropped, so a hostile server cannot smuggle lines into the
    // resolver configuration.
    static TunnelNetwork fromOpenVpnEnvironment(const QByteArray& environment);
};

} // namespace tavero
