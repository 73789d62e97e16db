#include "manager/utils.h"

#include <QDebug>
#include <QString>

namespace utils {
namespace {
constexpr int maxShifts = 128;
}

bool isOneFlagSetted(quint64 value)
{
    qDebug() << "isOneFlagSetted";
    int shifts = 0;
    while (value != 0 && (value & 1U) == 0 && shifts < maxShifts) {
        value >>= 1;
        ++shifts;
        qDebug() << shifts << "Underlying" << value << QString::number(value, 2);
    }
    return shifts <= maxShifts && value == 1;
}

QFlags<ProtocolType> usableProtocolTypes(QFlags<ProtocolType> stored)
{
    const QFlags<ProtocolType> all(protocols::allProtocols);
    // Bits outside the five protocols cannot come from the settings dialog: such a value is
    // repaired like any other unusable choice.
    const bool unknownBits = (stored & ~all) != 0;
    if (stored == all || (!unknownBits && isOneFlagSetted(stored)))
        return stored;
    return all;
}

} // namespace utils
