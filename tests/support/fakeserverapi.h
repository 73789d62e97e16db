#pragma once

#include "api/iserverapi.h"
#include "api/logoutbroadcaster.h"

#include <QHash>
#include <functional>

namespace tavero::test {

// A scriptable IServerApi: every operation returns the matching public field (set it before the
// call) and counts its calls; the last arguments are kept. An optional hook per call name runs
// before the answer is returned, so a test can change the next answer or act in the middle of a
// blocking exchange.
class FakeServerApi : public IServerApi {
public:
    FakeServerApi() = default;
    virtual ~FakeServerApi() = default;

    LoginResult loginByEmail(const QString& email, const QString& password) override;
    IpGettingResult receiveIp() override;
    LogoutBroadcaster& logoutBroadcaster() override;
    QString token() override;
    void setToken(const QString& token) override;
    AccountInfoGettingResult receiveAccountInfo() override;
    ServerListGettingResult receiveServerList() override;
    ServerListGettingResult receiveRecommendedServerList(const QString& ip) override;
    LastVersionGettingResult receiveLastVersion() override;
    QByteArray receiveFlagPicture(const QString& countryCode, FlagPictureSize size) override;
    bool isThereInternet() override;

    // How often the operation of that name (as spelled in IServerApi) was called.
    int calls(const QString& operation) const { return m_calls.value(operation); }
    // Runs at each call of `operation`, before the answer is read from the fields.
    void onCall(const QString& operation, std::function<void()> hook);

    LoginResult loginResult;
    IpGettingResult ipResult;
    QString currentToken;
    AccountInfoGettingResult accountInfo;
    ServerListGettingResult serverList;
    ServerListGettingResult recommendedServerList;
    LastVersionGettingResult lastVersion;
    QByteArray flagPicture;
    bool internet = true;

    QString lastEmail;
    QString lastPassword;
    QString lastRecommendedIp;
    QString lastFlagCountryCode;
    FlagPictureSize lastFlagSize = FlagPictureSize::Large;

private:
    void count(const QString& operation);

    LogoutBroadcaster m_broadcaster;
    QHash<QString, int> m_calls;
    QHash<QString, std::function<void()>> m_hooks;
};

} // namespace tavero::test
