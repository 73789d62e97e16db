#include "support/managerfixture.h"

#include "api/serverapi.h"
#include "manager/vpnmanager.h"
#include "platform/platformoverrides.h"
#include "support/testenvironment.h"
#include "support/testplatform.h"

namespace tavero::test {

ManagerFixture::ManagerFixture()
{
    TestEnvironment::clearSettings();
    PlatformOverrides::setAdministrator(true);
    PlatformOverrides::setRdpListening(false);
    ServerApi::setIsOpenVpnAllowed(false);
    ServerApi::setIsIKEv2Allowed(true);
    auto platform = std::make_unique<TestPlatform>();
    m_platform = platform.get();
    m_manager = std::make_unique<VpnManager>(m_api, std::move(platform), quietChainOptions());
    m_managerView = m_manager.get();
}

std::unique_ptr<VpnManager> ManagerFixture::releaseManager()
{
    return std::move(m_manager);
}

ManagerFixture::~ManagerFixture()
{
    m_manager.reset();
    PlatformOverrides::setAdministrator(std::nullopt);
    PlatformOverrides::setRdpListening(std::nullopt);
    ServerApi::setIsOpenVpnAllowed(true);
}

ConnectionChain::Options ManagerFixture::quietChainOptions()
{
    ConnectionChain::Options options;
    options.keeperIntervalMs = 3600 * 1000;
    options.reestablishIntervalMs = 3600 * 1000;
    options.asyncPollWindowMs = 10;
    return options;
}

void ManagerFixture::answerReachable(const ServerListGettingResult& all,
                                     const ServerListGettingResult& recommended, const QString& ip)
{
    m_api.loginResult.status = RequestResult::Ok;
    m_api.loginResult.token = QStringLiteral("token-1");
    m_api.currentToken = QStringLiteral("token-1");
    m_api.ipResult.status = RequestResult::Ok;
    m_api.ipResult.ip = ip;
    m_api.ipResult.countryCode = QStringLiteral("de");
    m_api.ipResult.isProtected = true;
    m_api.accountInfo.status = RequestResult::Ok;
    m_api.accountInfo.email = QStringLiteral("user@vpn.test");
    m_api.accountInfo.vpnUsername = QStringLiteral("vpn-user");
    m_api.accountInfo.vpnPassword = QStringLiteral("vpn-password");
    m_api.serverList = all;
    m_api.recommendedServerList = recommended;
    m_api.internet = true;
}

bool ManagerFixture::logIn()
{
    return m_managerView->loginByEmail(QStringLiteral("user@vpn.test"), QStringLiteral("secret"))
        .isSuccess;
}

bool ManagerFixture::connect()
{
    return m_managerView->connect().isSuccess &&
           m_managerView->connection().mode() == ConnectionChain::Connected;
}

int ManagerFixture::exchanges() const
{
    int total = m_api.flagCalls();
    for (const char* operation :
         {"loginByEmail", "receiveIp", "receiveAccountInfo", "receiveServerList",
          "receiveRecommendedServerList", "receiveLastVersion", "isThereInternet"}) {
        total += m_api.calls(QString::fromLatin1(operation));
    }
    return total;
}

} // namespace tavero::test
