#include "clientstage.h"

#include "gui/shell/viewmanager.h"
#include "manager/vpnmanager.h"
#include "platform/platformoverrides.h"
#include "support/testenvironment.h"
#include "support/testplatform.h"

#include <QVector>
#include <QWidget>

#ifndef TAVERO_FLAGS_DIR
#error "TAVERO_FLAGS_DIR names the folder of the development service's flag pictures"
#endif

namespace tavero::screenshots {

namespace {

struct Server {
    int countryId;
    const char* name;
    int load;
    bool recommended;
    bool longData = false; // only in the world of long texts
};

// A small world with every kind of load badge and one long server name.
const struct {
    int id;
    const char* code;
    const char* name;
} countries[] = {
    {13, "de", "Germany"},
    {19, "nl", "Netherlands"},
    {3, "us", "United States"},
    {9, "gb", "United Kingdom"},
    {15, "fr", "France"},
    {21, "se", "Sweden"},
    {43, "es", "Spain"},
    {73, "jp", "Japan"},
    {97, "za", "South Africa"},
    // The development service's longest names, and a longer one than any it sends.
    {33, "ch", "Switzerland"},
    {85, "nz", "New Zealand"},
    {103, "kr", "South Korea"},
    {69, "lu", "Luxembourg"},
    {180, "cd", "Democratic Republic of the Congo"},
};

const Server servers[] = {
    {13, "de-frankfurt-01", 7, true},
    {13, "de-frankfurt-02", 33, false},
    {19, "nl-amsterdam-01", 25, false},
    {19, "nl-amsterdam-02-premium-streaming", 18, true},
    {3, "us-newyork-01", 51, false},
    {3, "us-losangeles-02", 76, false},
    {9, "gb-london-01", 26, false},
    {15, "fr-paris-01", 50, false},
    {21, "se-stockholm-01", 100, false},
    {43, "es-madrid-01", 9, false},
    {73, "jp-tokyo-01", 64, false},
    {97, "za-johannesburg-01", 12, false},
    {33, "ch-zurich-01", 100, true, true},
    {85, "nz-auckland-01", 45, true, true},
    {103, "kr-seoul-01", 100, false, true},
    {69, "lu-luxembourg-01", 38, false, true},
    {180, "cd-kinshasa-international-exchange-01", 100, true, true},
    {180, "cd-kinshasa-international-exchange-02", 99, false, true},
};

ServerListGettingResult serverList(bool recommendedOnly, bool longData)
{
    ServerListGettingResult list;
    list.status = RequestResult::Ok;
    for (const Server& entry : servers) {
        if ((recommendedOnly && !entry.recommended) || (entry.longData && !longData))
            continue;
        VpnServerInformation server;
        server.countryId = entry.countryId;
        server.name = QString::fromLatin1(entry.name);
        server.host = server.name + QStringLiteral(".vpn.tavero.example");
        server.load = entry.load;
        server.isAvailable = true;
        server.isRecommended = entry.recommended;
        server.hasAccountData = true;
        server.vpnUsername = QStringLiteral("vpn-user");
        server.vpnPassword = QStringLiteral("vpn-password");
        list.serversByCountry[server.countryId].append(server);
    }
    for (const auto& entry : countries) {
        if (!list.serversByCountry.contains(entry.id))
            continue;
        CountryInformation country;
        country.id = entry.id;
        country.code = QString::fromLatin1(entry.code);
        country.name = QString::fromLatin1(entry.name);
        country.isAvailable = true;
        list.countriesById.insert(country.id, country);
        list.countriesByCode.insert(country.code, country);
    }
    return list;
}

IpGettingResult address(const char* ip, const char* countryCode, bool isProtected)
{
    IpGettingResult result;
    result.status = RequestResult::Ok;
    result.ip = QString::fromLatin1(ip);
    result.countryCode = QString::fromLatin1(countryCode);
    result.isProtected = isProtected;
    return result;
}

// The chain checks the tunnel only when asked, and never waits long for the scripted platform.
tavero::ConnectionChain::Options quietChain()
{
    tavero::ConnectionChain::Options options;
    options.keeperIntervalMs = 3600 * 1000;
    options.reestablishIntervalMs = 3600 * 1000;
    options.asyncPollWindowMs = 10;
    return options;
}

} // namespace

ClientStage::ClientStage(Data data)
    : m_api(QStringLiteral(TAVERO_FLAGS_DIR))
    , m_data(data)
{
    // Every picture starts from a fresh user: no server or option left by the previous one.
    test::TestEnvironment::clearSettings();
    // The tunnel comes up through the scripted platform's IKEv2 on any machine.
    PlatformOverrides::setAdministrator(true);
    PlatformOverrides::setRdpListening(false);
    m_manager = std::make_unique<tavero::VpnManager>(m_api, std::make_unique<test::TestPlatform>(),
                                                     quietChain());
    m_loginController = std::make_unique<LoginController>(*m_manager, m_viewManager);
    m_statusController = std::make_unique<StatusController>(*m_manager, m_viewManager);
    m_serverController = std::make_unique<ServerSelectionController>(*m_manager, m_viewManager);

    m_api.loginResult.status = RequestResult::Ok;
    m_api.loginResult.token = QStringLiteral("screenshot-token");
    m_api.currentToken = m_api.loginResult.token;
    m_api.accountInfo.status = RequestResult::Ok;
    m_api.accountInfo.email = QStringLiteral("traveller@tavero.example");
    m_api.accountInfo.vpnUsername = QStringLiteral("vpn-user");
    m_api.accountInfo.vpnPassword = QStringLiteral("vpn-password");
    m_api.serverList = serverList(false, data == Data::Long);
    m_api.recommendedServerList = serverList(true, data == Data::Long);
    m_api.ipResult = data == Data::Long
                         ? address("2001:0db8:85a3:0000:0000:8a2e:0370:7334", "nz", false)
                         : address("203.0.113.7", "de", false);
}

ClientStage::~ClientStage()
{
    m_serverController.reset();
    m_statusController.reset();
    m_loginController.reset();
    m_manager.reset();
    PlatformOverrides::setAdministrator(std::nullopt);
    PlatformOverrides::setRdpListening(std::nullopt);
}

bool ClientStage::enter(State state)
{
    m_manager->settings().setKillSwitch(false);
    if (!m_manager->loginByEmail(m_api.accountInfo.email, QStringLiteral("secret")).isSuccess)
        return false;
    if (state == State::Disconnected)
        return true;
    if (m_data == Data::Long) {
        m_manager->vpnServers().setCurrServer(
            QStringLiteral("cd-kinshasa-international-exchange-01"));
        m_api.ipResult = address("2001:0db8:85a3:0000:0000:8a2e:0370:7334", "cd", true);
    } else {
        m_manager->vpnServers().setCurrServer(QStringLiteral("nl-amsterdam-02-premium-streaming"));
        m_api.ipResult = address("198.51.100.23", "nl", true);
    }
    return m_manager->connect().isSuccess &&
           m_manager->connection().mode() == tavero::ConnectionChain::Connected;
}

void ClientStage::applyFontPass(QWidget* page)
{
    QVector<QPair<QWidget*, int>> sizes;
    ViewManager::correctFonts(page, 1.0, sizes);
    ViewManager::applyPageFonts(sizes);
}

} // namespace tavero::screenshots
