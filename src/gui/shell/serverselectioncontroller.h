#pragma once

#include "api/countrypresentationdata.h"
#include "api/serverlistgettingresult.h"
#include "api/serverspresentationdata.h"

#include <QImage>
#include <QMap>
#include <QString>
#include <QVector>

class IViewManager;

namespace tavero {
class VpnManager;
}

// The model of the server selection page and of the status page's next-server action: builds the
// page's rows from the selector's two lists, picks a country's best server, applies the user's
// choice of a country and switches to the next server within the current country.
class ServerSelectionController {
public:
    ServerSelectionController(tavero::VpnManager& manager, IViewManager& viewManager);

    // Rows of the recommended and the full list. Refreshes both lists first unless the kill
    // switch holds the network down, in which case the lists held from before are used and no
    // request is made. Blocks until every row and flag is ready.
    ServersPresentationData receiveServers();
    QVector<CountryPresentationData> makeServersData(ServerListGettingResult list);
    // The country's small flag, decoded; null when there is none. Safe on any thread.
    QImage countryPixmapFromCode(const QString& code);

    int getBestServerIndex(QVector<VpnServerInformation> servers) const;
    QString getServerLoadingText(VpnServerInformation& server) const;
    // Country code to the load text of its best server, from a freshly fetched full list.
    QMap<QString, QString> getCountryLoadings() const;
    QString getCountryNameByCode(const ServerListGettingResult& list, const QString& code) const;
    QString getBestServerNameByCountryCode(const ServerListGettingResult& list,
                                           const QString& code) const;

    // Makes the best server of the country current (recommended servers first) and returns to
    // the status page; with no available server there, says so in a box and stays.
    void onCountrySelection(const QString& code);
    // The next available server of the current server's country in list order, wrapping round.
    void onSwitchToNextServer();
    bool isMultiserverCountry() const;
    void goBack();

private:
    tavero::VpnManager& m_manager;
    IViewManager& m_viewManager;
};
