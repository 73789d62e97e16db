#pragma once

#include <QFlags>
#include <QString>
#include <QStringList>

enum ProtocolType : int {
    IKEv2 = 1,
    OvpnTcp = 2,
    OvpnUdp = 4,
    L2tp = 8,
    Pptp = 16,
};
Q_DECLARE_FLAGS(ProtocolTypes, ProtocolType)
Q_DECLARE_OPERATORS_FOR_FLAGS(ProtocolTypes)

namespace protocols {
// All five flags together: the automatic choice.
inline constexpr int allProtocols = IKEv2 | OvpnTcp | OvpnUdp | L2tp | Pptp;

// "IKEv2", "Open VPN TCP", "Open VPN UDP", "L2TP", "PPTP"; empty for anything else.
QString displayText(ProtocolType type);

// The display texts of the set flags in the order TCP, UDP, L2TP, PPTP, IKEv2 (IKEv2 last).
QStringList displayTexts(QFlags<ProtocolType> flags);

// displayTexts() joined by ", "; empty for an empty set.
QString textualList(QFlags<ProtocolType> flags);

// True when exactly one of the five flags is set.
bool isSingleFlag(QFlags<ProtocolType> flags);
} // namespace protocols
