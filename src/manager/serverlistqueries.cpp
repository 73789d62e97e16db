#include "manager/serverlistqueries.h"

#include <QDebug>
#include <algorithm>

namespace tavero {

int ServerListQueries::bestServerIndex(const QVector<VpnServerInformation>& servers)
{
    qDebug() << "Servers was:" << servers.size();
    const auto available =
        std::count_if(servers.cbegin(), servers.cend(),
                      [](const VpnServerInformation& server) { return server.isAvailable; });
    qDebug() << "Servers now:" << available;
    int best = -1;
    for (int index = 0; index < servers.size(); ++index) {
        const VpnServerInformation& server = servers[index];
        if (!server.isAvailable)
            continue;
        if (best < 0) {
            best = index;
            continue;
        }
        const VpnServerInformation& chosen = servers[best];
        qDebug() << "a,b" << chosen.name << chosen.load << server.name << server.load;
        if (server.load < chosen.load)
            best = index;
    }
    return best;
}

QString ServerListQueries::loadingText(const VpnServerInformation& server)
{
    return server.isAvailable ? QStringLiteral("%1%").arg(server.load) : QString();
}

QString ServerListQueries::countryNameByCode(const ServerListGettingResult& list,
                                             const QString& code)
{
    return list.countriesByCode.value(code).name;
}

QString ServerListQueries::bestServerNameByCountryCode(const ServerListGettingResult& list,
                                                       const QString& code)
{
    const auto country = list.countriesByCode.constFind(code);
    if (country == list.countriesByCode.cend())
        return QString();
    const auto servers = list.serversByCountry.constFind(country->id);
    if (servers == list.serversByCountry.cend())
        return QString();
    const int best = bestServerIndex(*servers);
    return best < 0 ? QString() : servers->at(best).name;
}

QVector<VpnServerInformation> ServerListQueries::sortedByName(QVector<VpnServerInformation> servers)
{
    std::sort(servers.begin(), servers.end(),
              [](const VpnServerInformation& a, const VpnServerInformation& b) {
                  return a.name < b.name;
              });
    return servers;
}

QVector<int> ServerListQueries::countryIdsByName(const ServerListGettingResult& list)
{
    QVector<int> ids = list.serversByCountry.keys().toVector();
    std::stable_sort(ids.begin(), ids.end(), [&list](int a, int b) {
        return list.countriesById.value(a).name < list.countriesById.value(b).name;
    });
    return ids;
}

} // namespace tavero
