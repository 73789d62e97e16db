#include "gui/shell/serverselectioncontroller.h"

#include "gui/shell/iviewmanager.h"
#include "gui/shell/iviewmanagerutils.h"
#include "manager/serverlistqueries.h"
#include "manager/serverrowbuilder.h"
#include "manager/vpnmanager.h"

#include <QCoreApplication>
#include <QDebug>

using tavero::ServerListQueries;

ServerSelectionController::ServerSelectionController(tavero::VpnManager& manager,
                                                     IViewManager& viewManager)
    : m_manager(manager)
    , m_viewManager(viewManager)
{}

ServersPresentationData ServerSelectionController::receiveServers()
{
    tavero::VpnServerSelector& selector = m_manager.vpnServers();
    if (m_manager.killSwitcher().isInternetOff()) {
        qDebug() << "kill switch is triggered get servser from cache";
    } else {
        qDebug() << "kill switch is NOT triggered get servser from api";
        // Failures leave whatever the service client returned; the page shows what there is.
        selector.receiveServerListInfo();
        selector.receiveRecommendedServerListInfo(m_manager.ipAdress());
    }
    ServersPresentationData data;
    data.recommended = makeServersData(selector.recommendedServers());
    data.all = makeServersData(selector.servers());
    return data;
}

QVector<CountryPresentationData>
ServerSelectionController::makeServersData(ServerListGettingResult list)
{
    const tavero::ServerRowBuilder builder(
        [this](const QString& code) { return countryPixmapFromCode(code); });
    return builder.build(list);
}

QImage ServerSelectionController::countryPixmapFromCode(const QString& code)
{
    return QImage::fromData(m_manager.receiveFlagPicture(code, FlagPictureSize::Small));
}

int ServerSelectionController::getBestServerIndex(QVector<VpnServerInformation> servers) const
{
    return ServerListQueries::bestServerIndex(servers);
}

QString ServerSelectionController::getServerLoadingText(VpnServerInformation& server) const
{
    return ServerListQueries::loadingText(server);
}

QMap<QString, QString> ServerSelectionController::getCountryLoadings() const
{
    tavero::VpnServerSelector& selector = m_manager.vpnServers();
    selector.receiveServerListInfo();
    const ServerListGettingResult& list = selector.servers();
    QMap<QString, QString> loadings;
    for (auto it = list.serversByCountry.cbegin(); it != list.serversByCountry.cend(); ++it) {
        const auto country = list.countriesById.constFind(it.key());
        if (country == list.countriesById.cend()) {
            qDebug() << "Warning! Country list doesn't contain servers coutry, idx:" << it.key();
            continue;
        }
        const int best = ServerListQueries::bestServerIndex(it.value());
        if (best != -1)
            loadings.insert(country->code, ServerListQueries::loadingText(it.value().at(best)));
    }
    return loadings;
}

QString ServerSelectionController::getCountryNameByCode(const ServerListGettingResult& list,
                                                        const QString& code) const
{
    return ServerListQueries::countryNameByCode(list, code);
}

QString
ServerSelectionController::getBestServerNameByCountryCode(const ServerListGettingResult& list,
                                                          const QString& code) const
{
    return ServerListQueries::bestServerNameByCountryCode(list, code);
}

void ServerSelectionController::onCountrySelection(const QString& code)
{
    tavero::VpnServerSelector& selector = m_manager.vpnServers();
    if (!selector.receiveServerListInfoIfNeed().isSuccess)
        return;
    QString name = getBestServerNameByCountryCode(selector.recommendedServers(), code);
    if (name.isEmpty())
        name = getBestServerNameByCountryCode(selector.servers(), code);
    if (name.isEmpty()) {
        m_viewManager.utils()->information(
            QCoreApplication::translate("QObject", "label.server_selection"),
            QCoreApplication::translate("QObject",
                                        "warning.no_server_available_in_country_select_another"),
            QMessageBox::Ok, QMessageBox::NoButton);
        return;
    }
    selector.setCurrServer(name);
    goBack();
}

void ServerSelectionController::onSwitchToNextServer()
{
    tavero::VpnServerSelector& selector = m_manager.vpnServers();
    if (!selector.receiveServerListInfoIfNeed().isSuccess)
        return;
    const VpnServerInformation current = selector.currServer();
    const auto& byCountry = selector.servers().serversByCountry;
    const auto countryServers = byCountry.constFind(current.countryId);
    if (countryServers == byCountry.cend()) {
        qDebug() << "Warning! Can't find servers list to switch to next country server";
        return;
    }
    QVector<VpnServerInformation> available;
    std::copy_if(countryServers->cbegin(), countryServers->cend(), std::back_inserter(available),
                 [](const VpnServerInformation& server) { return server.isAvailable; });
    if (available.isEmpty()) {
        qDebug() << "Warning! Country servers list is empty";
        return;
    }
    if (available.size() == 1 && available.first().name == current.name) {
        qDebug().noquote()
            << "Warning! Can't switch servers, the one\tpossible server is already set";
        return;
    }
    const auto position =
        std::find_if(available.cbegin(), available.cend(),
                     [&current](const VpnServerInformation& s) { return s.name == current.name; });
    int next = -1;
    if (position != available.cend()) {
        next = static_cast<int>(position - available.cbegin()) + 1;
        if (next >= available.size())
            next = 0;
    } else {
        qDebug() << "Warning! Can't find current server ";
        next = ServerListQueries::bestServerIndex(available);
    }
    if (next == -1) {
        qDebug() << "Warning! Can't change the server, haven't allowed servers in current country";
        return;
    }
    selector.setCurrServer(available.at(next).name);
}

bool ServerSelectionController::isMultiserverCountry() const
{
    tavero::VpnServerSelector& selector = m_manager.vpnServers();
    if (!selector.receiveServerListInfoIfNeed().isSuccess)
        return false;
    const int countryId = selector.currServer().countryId;
    const auto& byCountry = selector.servers().serversByCountry;
    const auto servers = byCountry.constFind(countryId);
    return servers != byCountry.cend() && servers->size() > 1;
}

void ServerSelectionController::goBack()
{
    m_viewManager.goToStatus(false);
}
