#include "support/fakeserverapi.h"

namespace tavero::test {

void FakeServerApi::onCall(const QString& operation, std::function<void()> hook)
{
    m_hooks.insert(operation, std::move(hook));
}

void FakeServerApi::count(const QString& operation)
{
    ++m_calls[operation];
    const auto hook = m_hooks.constFind(operation);
    if (hook != m_hooks.constEnd() && *hook) {
        (*hook)();
    }
}

LoginResult FakeServerApi::loginByEmail(const QString& email, const QString& password)
{
    lastEmail = email;
    lastPassword = password;
    count(QStringLiteral("loginByEmail"));
    return loginResult;
}

IpGettingResult FakeServerApi::receiveIp()
{
    count(QStringLiteral("receiveIp"));
    return ipResult;
}

LogoutBroadcaster& FakeServerApi::logoutBroadcaster()
{
    count(QStringLiteral("logoutBroadcaster"));
    return m_broadcaster;
}

QString FakeServerApi::token()
{
    count(QStringLiteral("token"));
    return currentToken;
}

void FakeServerApi::setToken(const QString& token)
{
    count(QStringLiteral("setToken"));
    currentToken = token;
}

AccountInfoGettingResult FakeServerApi::receiveAccountInfo()
{
    count(QStringLiteral("receiveAccountInfo"));
    return accountInfo;
}

ServerListGettingResult FakeServerApi::receiveServerList()
{
    count(QStringLiteral("receiveServerList"));
    return serverList;
}

ServerListGettingResult FakeServerApi::receiveRecommendedServerList(const QString& ip)
{
    lastRecommendedIp = ip;
    count(QStringLiteral("receiveRecommendedServerList"));
    return recommendedServerList;
}

LastVersionGettingResult FakeServerApi::receiveLastVersion()
{
    count(QStringLiteral("receiveLastVersion"));
    return lastVersion;
}

QByteArray FakeServerApi::receiveFlagPicture(const QString& countryCode, FlagPictureSize size)
{
    lastFlagCountryCode = countryCode;
    lastFlagSize = size;
    count(QStringLiteral("receiveFlagPicture"));
    return flagPicture;
}

bool FakeServerApi::isThereInternet()
{
    count(QStringLiteral("isThereInternet"));
    return internet;
}

} // namespace tavero::test
