#include "manager/vpnserverselector.h"

#include "api/iserverapi.h"
#include "app/isettings.h"

#include <functional>

namespace tavero {
namespace {

// The available server with the lowest load among those `accept` lets through, scanning in
// ascending country id and list order; the first of equal loads wins. Null when none.
const VpnServerInformation*
lowestLoad(const ServerListGettingResult& list,
           const std::function<bool(const VpnServerInformation&)>& accept)
{
    const VpnServerInformation* best = nullptr;
    for (const QVector<VpnServerInformation>& servers : list.serversByCountry) {
        for (const VpnServerInformation& server : servers) {
            if (server.isAvailable && accept(server) && (!best || server.load < best->load))
                best = &server;
        }
    }
    return best;
}

} // namespace

VpnServerSelector::VpnServerSelector(IServerApi& api, ISettings& settings)
    : m_api(api)
    , m_settings(settings)
{}

void VpnServerSelector::clear()
{
    m_servers = ServerListGettingResult();
}

OperationResult VpnServerSelector::receiveServerListInfoIfNeed()
{
    if (m_servers.status == RequestResult::Ok)
        return OperationResult();
    return receiveServerListInfo();
}

OperationResult VpnServerSelector::receiveServerListInfo()
{
    m_servers = m_api.receiveServerList();
    return toOperationResult(m_servers);
}

OperationResult VpnServerSelector::receiveRecommendedServerListInfo(const QString& ip)
{
    m_recommendedServers = m_api.receiveRecommendedServerList(ip);
    return toOperationResult(m_recommendedServers);
}

OperationResult VpnServerSelector::toOperationResult(const ServerListGettingResult& list) const
{
    switch (list.status) {
    case RequestResult::Ok:
        return OperationResult();
    case RequestResult::NoInternet:
        return OperationResult(tr("warning.connection_problems_check_internet_connection"));
    default:
        return OperationResult(tr("warning.failed_get_information_about_vpn_servers"));
    }
}

void VpnServerSelector::selectCurrServerUsingSettings()
{
    tryFindCurrServer(!m_settings.isAutoLocation());
}

void VpnServerSelector::tryFindCurrServer(bool useSavedServer)
{
    const QString saved = m_settings.serverName();
    if (useSavedServer) {
        if (lowestLoad(m_servers,
                       [&saved](const VpnServerInformation& s) { return s.name == saved; }))
            return;
    }
    const VpnServerInformation* best =
        lowestLoad(m_servers, [](const VpnServerInformation& s) { return s.isRecommended; });
    if (!best)
        best = lowestLoad(m_servers, [](const VpnServerInformation&) { return true; });
    if (best)
        setCurrServer(best->name);
}

VpnServerInformation VpnServerSelector::currServer()
{
    tryFindCurrServer(true);
    const QString saved = m_settings.serverName();
    for (const QVector<VpnServerInformation>& servers : qAsConst(m_servers.serversByCountry)) {
        for (const VpnServerInformation& server : servers) {
            if (server.name == saved)
                return server;
        }
    }
    return VpnServerInformation();
}

void VpnServerSelector::setCurrServer(const QString& name)
{
    m_settings.setServerName(name);
    emit serverWasChanged();
}

} // namespace tavero
