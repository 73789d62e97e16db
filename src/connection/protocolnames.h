#pragma once

#include <QString>

namespace tavero {

// Display names of the protocols, built once; also the "Disconnected" entry shown when no tunnel
// is live.
class ProtocolNamesClass {
public:
    const QString disconnected = QStringLiteral("Disconnected");
    const QString ovpnTcp = QStringLiteral("Open VPN TCP");
    const QString ovpnUdp = QStringLiteral("Open VPN UDP");
    const QString l2tp = QStringLiteral("L2TP");
    const QString pptp = QStringLiteral("PPTP");
    const QString ikev2 = QStringLiteral("IKEv2");
};

} // namespace tavero
