#pragma once

#include "api/operationresult.h"
#include "api/serverlistgettingresult.h"

#include <QObject>

class IServerApi;

namespace tavero {

class ISettings;

// Holds the user's two server lists and decides which server is current. The current server is
// never held in memory: it is re-derived from the saved name and the full list each time.
class VpnServerSelector : public QObject {
    Q_OBJECT
public:
    VpnServerSelector(IServerApi& api, ISettings& settings);

    // Empties the full list; the recommended list stays.
    void clear();
    OperationResult receiveServerListInfoIfNeed();
    OperationResult receiveServerListInfo();
    OperationResult receiveRecommendedServerListInfo(const QString& ip);
    void selectCurrServerUsingSettings();
    void tryFindCurrServer(bool useSavedServer);
    VpnServerInformation currServer();
    void setCurrServer(const QString& name);
    ServerListGettingResult& servers() { return m_servers; }
    const ServerListGettingResult& recommendedServers() const { return m_recommendedServers; }

signals:
    void serverWasChanged();

private:
    OperationResult toOperationResult(const ServerListGettingResult& list) const;

    IServerApi& m_api;
    ISettings& m_settings;
    ServerListGettingResult m_servers;
    ServerListGettingResult m_recommendedServers;
};

} // namespace tavero
