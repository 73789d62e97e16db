#include "support/concurrentfakeserverapi.h"

#include <QMutexLocker>

namespace tavero::test {

QByteArray ConcurrentFakeServerApi::receiveFlagPicture(const QString& countryCode,
                                                       FlagPictureSize size)
{
    const QMutexLocker locker(&m_flagMutex);
    m_flagCodes << countryCode;
    lastFlagCountryCode = countryCode;
    lastFlagSize = size;
    return flagPicture;
}

int ConcurrentFakeServerApi::flagCalls() const
{
    const QMutexLocker locker(&m_flagMutex);
    return m_flagCodes.size();
}

} // namespace tavero::test
