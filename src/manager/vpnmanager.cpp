#include "manager/vpnmanager.h"

#include "api/iserverapi.h"
#include "api/logoutbroadcaster.h"
#include "api/serverapi.h"
#include "platform/nativeplatform.h"

#include <QCoreApplication>
#include <QDebug>

namespace tavero {

namespace {
std::unique_ptr<IPlatform> orNative(std::unique_ptr<IPlatform> platform)
{
    return platform ? std::move(platform) : std::make_unique<NativePlatform>();
}
} // namespace

VpnManager::VpnManager(IServerApi& api, std::unique_ptr<IPlatform> platform,
                       ConnectionChain::Options chainOptions)
    : m_api(api)
    , m_platformInjector(orNative(std::move(platform)))
    , m_platform(m_platformInjector.platform())
    , m_settings(std::make_unique<Settings>())
    , m_selector(api, *m_settings)
    , m_killSwitcher(api, m_platform, *m_settings)
    , m_chain(api, m_platform, *m_settings, m_killSwitcher, std::move(chainOptions))
{
    QObject::connect(&m_selector, &VpnServerSelector::serverWasChanged, this,
                     &VpnManager::onServerWasChanged);
    // Every mode change may have moved the routes: no kept-alive connection of the service client
    // may carry an exchange (the verifying IP check above all) past a tunnel or into a dead one.
    QObject::connect(&m_chain, &ConnectionChain::modeChanged, this, [this] {
        ServerApi::routesChanged(m_chain.mode() == ConnectionChain::Connecting);
    });
    // A copy that crashed (or was killed) while the kill switch held the network cut left the
    // switched-off connections on disk: every client that builds a manager brings them back.
    m_killSwitcher.restoreLeftover();
}

VpnManager::~VpnManager() = default;

LogoutBroadcaster& VpnManager::logoutBroadcaster()
{
    return m_api.logoutBroadcaster();
}

bool VpnManager::isConnected()
{
    return m_ipInformation.status == RequestResult::Ok && m_ipInformation.isProtected &&
           m_chain.mode() == ConnectionChain::Connected;
}

bool VpnManager::isProtected()
{
    if (m_killSwitcher.isInternetOff() || m_chain.sayKillSwitched())
        return false;
    return isConnected();
}

QString VpnManager::isProtectedText()
{
    const bool cut = m_killSwitcher.isInternetOff() || m_chain.sayKillSwitched();
    if (m_settings->isKillSwitch() && cut)
        return QCoreApplication::translate("QObject", "label.not_secure");
    return isConnected() ? QCoreApplication::translate("QObject", "label.protected")
                         : QCoreApplication::translate("QObject", "label.not_secure");
}

QString VpnManager::countryCode() const
{
    return m_ipInformation.status == RequestResult::Ok ? m_ipInformation.countryCode : QString();
}

QString VpnManager::ipAdress() const
{
    return m_ipInformation.status == RequestResult::Ok ? m_ipInformation.ip
                                                       : tr("label.not_determined");
}

QString VpnManager::getCountryName()
{
    const auto& byCode = m_selector.servers().countriesByCode;
    const auto found = byCode.constFind(countryCode());
    return found == byCode.cend() ? QString() : found->name;
}

QString VpnManager::getLastConnectedCountryName()
{
    const VpnServerInformation server = m_selector.currServer();
    const auto& byId = m_selector.servers().countriesById;
    const auto found = byId.constFind(server.countryId);
    return found == byId.cend() ? QString() : found->name;
}

bool VpnManager::isThereInternet()
{
    return m_api.isThereInternet();
}

QByteArray VpnManager::receiveFlagPicture(const QString& countryCode, FlagPictureSize size)
{
    return m_api.receiveFlagPicture(countryCode, size);
}

bool VpnManager::isKillSwitch()
{
    return m_settings->isKillSwitch();
}

OperationResult VpnManager::doSomethingBeforeLogin()
{
    m_ipInformation = IpGettingResult();
    m_account = AccountInfoGettingResult();
    m_selector.clear();
    m_killSwitcher.startInternet(30);
    return OperationResult();
}

OperationResult VpnManager::loginByEmail(const QString& email, const QString& password)
{
    const OperationResult before = doSomethingBeforeLogin();
    if (!before.isSuccess)
        return before;
    const LoginResult result = m_api.loginByEmail(email, password);
    return doSomethingAfterLogin(result, email);
}

OperationResult VpnManager::doSomethingAfterLogin(const LoginResult& result, const QString& email)
{
    if (result.status != RequestResult::Ok)
        return loginResultToOperationResult(result);
    m_api.receiveAccountInfo();
    if (m_ipInformation.ip.isEmpty())
        udpateIpInformation();
    const OperationResult listed = m_selector.receiveServerListInfo();
    if (!listed.isSuccess)
        return listed;
    m_selector.receiveRecommendedServerListInfo(m_ipInformation.ip);
    m_selector.selectCurrServerUsingSettings();
    // Each setter rewrites the settings file; a log-in with the stored token usually changes
    // nothing, and tavero-cli logs in on every command.
    if (m_settings->token() != m_api.token())
        m_settings->setToken(m_api.token());
    if (!email.isEmpty() && email != m_settings->getEmail())
        m_settings->setEmail(email);
    return OperationResult();
}

OperationResult VpnManager::tryAutoLoginOnRestart()
{
    const QString token = m_settings->token();
    if (token.isEmpty())
        return storedLoginFailure(RequestResult::ServerError);
    m_api.setToken(token);
    const IpGettingResult ip = m_api.receiveIp();
    if (ip.status != RequestResult::Ok)
        return storedLoginFailure(ip.status);
    const OperationResult before = doSomethingBeforeLogin();
    if (!before.isSuccess) {
        qDebug() << before.message;
        return before;
    }
    LoginResult stored;
    stored.status = RequestResult::Ok;
    stored.token = token;
    const OperationResult after = doSomethingAfterLogin(stored, QString());
    if (!after.isSuccess) {
        qDebug() << after.message;
        // Only the server list can fail here.
        return storedLoginFailure(m_selector.servers().status);
    }
    return OperationResult();
}

OperationResult VpnManager::storedLoginFailure(int status)
{
    // A service that cannot be reached says nothing about the log-in: the user must not be told
    // to log in again because the network is down.
    OperationResult result = tryRequestResultToOperationResult(RequestResult{status, {}});
    if (status == RequestResult::NoInternet)
        result.code = OperationResult::NoInternet;
    else if (result.isSuccess)
        result = OperationResult(tr("warning.can_not_authorize_try_again"),
                                 OperationResult::LoginRefused);
    return result;
}

OperationResult VpnManager::tryRequestResultToOperationResult(const RequestResult& result)
{
    switch (result.status) {
    case RequestResult::NoInternet:
        return OperationResult(tr("warning.connection_problems_check_internet_connection"));
    case RequestResult::InvalidResponse:
        return OperationResult(
            tr("warning.response_does_not_match_requested_protocol_update_the_program"));
    default:
        return OperationResult();
    }
}

OperationResult VpnManager::loginResultToOperationResult(const LoginResult& result)
{
    const OperationResult transport = tryRequestResultToOperationResult(result);
    if (!transport.isSuccess) {
        qDebug() << transport.isSuccess;
        return transport;
    }
    if (result.message == QLatin1String("invalid_user_credentials"))
        return OperationResult(tr("warning.login_or_pass_are_incorrect"));
    // "could_not_create_token" and every other refusal read the same to the user.
    return OperationResult(tr("warning.can_not_authorize_try_again"));
}

void VpnManager::udpateIpInformation()
{
    m_ipInformation = m_api.receiveIp();
}

OperationResult VpnManager::receiveIp()
{
    m_ipInformation = m_api.receiveIp();
    if (m_ipInformation.status != RequestResult::Ok)
        return OperationResult(tr("warning.can_not_get_connection_info"));
    return OperationResult();
}

OperationResult VpnManager::receiveAccountInfo()
{
    m_account = m_api.receiveAccountInfo();
    if (m_account.status != RequestResult::Ok)
        return OperationResult(tr("warning.failed_to_get_account_information"));
    return OperationResult();
}

OperationResult VpnManager::connect()
{
    const OperationResult listed = m_selector.receiveServerListInfoIfNeed();
    if (!listed.isSuccess) {
        qDebug() << listed.isSuccess;
        return listed;
    }
    return m_chain.connect(m_selector.currServer());
}

OperationResult VpnManager::disconnect()
{
    return m_chain.disconnect();
}

void VpnManager::onServerWasChanged()
{
    m_chain.serverWasChanged(m_selector.currServer());
}

void VpnManager::startImagesLoading()
{
    qDebug() << "Start image loading";
    m_selector.receiveServerListInfo();
    const ServerListGettingResult& list = m_selector.servers();
    for (auto it = list.serversByCountry.cbegin(); it != list.serversByCountry.cend(); ++it) {
        const CountryInformation country = list.countriesById.value(it.key());
        m_api.receiveFlagPicture(country.code, FlagPictureSize::Small);
    }
    qDebug() << "Image loading finished";
    emit imageLoadingFinished();
}

bool VpnManager::reestablishInternetConnection()
{
    return m_killSwitcher.startInternet(15);
}

void VpnManager::turnOnIsProgrammTermination()
{
    m_isProgrammTermination = true;
    m_chain.turnOnIsProgrammTermination();
}

} // namespace tavero
