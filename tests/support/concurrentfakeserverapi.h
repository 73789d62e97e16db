#pragma once

#include "support/fakeserverapi.h"

#include <QMutex>
#include <QStringList>

namespace tavero::test {

// FakeServerApi whose flag pictures may be asked for from several threads at once, as the server
// page's row builder does.
class ConcurrentFakeServerApi : public FakeServerApi {
public:
    QByteArray receiveFlagPicture(const QString& countryCode, FlagPictureSize size) override;

    int flagCalls() const;

private:
    mutable QMutex m_flagMutex;
    QStringList m_flagCodes;
};

} // namespace tavero::test
