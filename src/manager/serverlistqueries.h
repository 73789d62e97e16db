#pragma once

#include "api/serverlistgettingresult.h"

#include <QString>
#include <QVector>

namespace tavero {

// Questions about one server list that the server page, the status page and the command-line
// front end all ask: which server of a country is best, how loaded it is, what a code is called.
class ServerListQueries {
public:
    // Position in `servers` of the available server with the lowest load, the earliest of equal
    // loads; -1 when none is available.
    static int bestServerIndex(const QVector<VpnServerInformation>& servers);
    // "37%" for an available server with load 37, empty for an unavailable one.
    static QString loadingText(const VpnServerInformation& server);
    // The name of the country with that code, empty when the list has none.
    static QString countryNameByCode(const ServerListGettingResult& list, const QString& code);
    // The name of the best server of the country with that code, empty when the country is
    // unknown, has no servers or none of them is available.
    static QString bestServerNameByCountryCode(const ServerListGettingResult& list,
                                               const QString& code);
    // The servers ordered by name, as every list of them is shown.
    static QVector<VpnServerInformation> sortedByName(QVector<VpnServerInformation> servers);
    // The ids of the list's countries ordered by country name, as the rows are shown.
    static QVector<int> countryIdsByName(const ServerListGettingResult& list);
};

} // namespace tavero
