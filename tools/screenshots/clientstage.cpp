#include "clientstage.h"

#include "gui/shell/colors.h"
#include "gui/shell/fontsizetable.h"
#include "gui/shell/qttools.h"
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
};

// A small world with every kind of load badge and one long server name.
const struct {
    int id;
    const char* code;
    const char* name;
} countries[] = {
    {13, "de", "Germany"},       {19, "nl", "Netherlands"}, {3, "us", "United States"},
    {9, "gb", "United Kingdom"}, {15, "fr", "France"},      {21, "se", "Sweden"},
    {43, "es", "Spain"},         {73, "jp", "Japan"},       {97, "za", "South Africa"},
};

const Server servers[] = {
    {13, "de-frankfurt-01", 7, true},    {13, "de-frankfurt-02", 33, false},
    {19, "nl-amsterdam-01", 25, false},  {19, "nl-amsterdam-02-premium-streaming", 18, true},
    {3, "us-newyork-01", 51, false},     {3, "us-losangeles-02", 76, false},
    {9, "gb-london-01", 26, false},      {15, "fr-paris-01", 50, false},
    {21, "se-stockholm-01", 100, false}, {43, "es-madrid-01", 9, false},
    {73, "jp-tokyo-01", 64, false},      {97, "za-johannesburg-01", 12, false},
};

ServerListGettingResult serverList(bool recommendedOnly)
{
    ServerListGettingResult list;
    list.status = RequestResult::Ok;
    for (const Server& entry : servers) {
        if (recommendedOnly && !entry.recommended)
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

void collectFonts(QWidget* widget, QVector<QPair<QWidget*, int>>& sizes)
{
    sizes.append({widget, static_cast<int>(widget->font().pointSizeF() + 0.5)});
    for (QObject* child : widget->children()) {
        if (auto* childWidget = qobject_cast<QWidget*>(child))
            collectFonts(childWidget, sizes);
    }
}

} // namespace

ClientStage::ClientStage()
    : m_api(QStringLiteral(TAVERO_FLAGS_DIR))
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
    m_api.serverList = serverList(false);
    m_api.recommendedServerList = serverList(true);
    m_api.ipResult = address("203.0.113.7", "de", false);
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
    m_manager->vpnServers().setCurrServer(QStringLiteral("nl-amsterdam-02-premium-streaming"));
    m_api.ipResult = address("198.51.100.23", "nl", true);
    return m_manager->connect().isSuccess &&
           m_manager->connection().mode() == tavero::ConnectionChain::Connected;
}

void ClientStage::applyFontPass(QWidget* page)
{
    QVector<QPair<QWidget*, int>> sizes;
    collectFonts(page, sizes);
    for (const auto& [widget, size] : qAsConst(sizes)) {
        QFont font = widget->font();
        font.setPointSize(static_cast<int>(FontSizeTable::rescaleSize(size)));
        font.setFamily(QStringLiteral("Montserrat"));
        widget->setFont(font);
    }
}

void ClientStage::fitToWindow(QWidget* page)
{
    // As the main window places a page: white behind it, shrunk to its contents but never below
    // 360 × 550 (adjustSize() would also cap it at two thirds of the offscreen screen).
    QtTools::paintWidget(page, QColor(Colors::white));
    page->setMinimumSize(360, 550);
    page->resize(page->sizeHint().expandedTo(page->minimumSizeHint()).expandedTo(QSize(360, 550)));
}

} // namespace tavero::screenshots
