#pragma once

#include "api/protocoltype.h"

#include <QFlags>
#include <QtGlobal>

namespace utils {

// True when exactly one bit of `value` is set: shifts it right past its clear low bits (at most
// 128 shifts) and checks that 1 is left. Every step is logged at debug level.
bool isOneFlagSetted(quint64 value);

template <typename Enum>
bool isOneFlagSetted(QFlags<Enum> flags)
{
    return isOneFlagSetted(static_cast<quint64>(static_cast<typename QFlags<Enum>::Int>(flags)));
}

// The stored protocol choice as every front end uses it: exactly one protocol, or all five (the
// automatic choice). Anything else (none, several, unknown bits) becomes all five.
QFlags<ProtocolType> usableProtocolTypes(QFlags<ProtocolType> stored);

} // namespace utils
