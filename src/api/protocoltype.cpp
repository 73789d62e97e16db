#include "api/protocoltype.h"

#include <array>

namespace protocols {

QString displayText(ProtocolType type)
{
    switch (type) {
    case IKEv2:
        return QStringLiteral("IKEv2");
    case OvpnTcp:
        return QStringLiteral("Open VPN TCP");
    case OvpnUdp:
        return QStringLiteral("Open VPN UDP");
    case L2tp:
        return QStringLiteral("L2TP");
    case Pptp:
        return QStringLiteral("PPTP");
    }
    return {};
}

QStringList displayTexts(QFlags<ProtocolType> flags)
{
    static constexpr std::array<ProtocolType, 5> order{OvpnTcp, OvpnUdp, L2tp, Pptp, IKEv2};
    QStringList texts;
    for (const ProtocolType type : order) {
        if (flags.testFlag(type))
            texts << displayText(type);
    }
    return texts;
}

QString textualList(QFlags<ProtocolType> flags)
{
    return displayTexts(flags).join(QStringLiteral(", "));
}

bool isSingleFlag(QFlags<ProtocolType> flags)
{
    const int value = static_cast<int>(flags) & allProtocols;
    return value != 0 && (value & (value - 1)) == 0 && value == static_cast<int>(flags);
}

} // namespace protocols
