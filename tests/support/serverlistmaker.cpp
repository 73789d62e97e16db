#include "support/serverlistmaker.h"

namespace tavero::test {

ServerListMaker& ServerListMaker::country(int id, const QString& code, const QString& name)
{
    CountryInformation country;
    country.id = id;
    country.code = code;
    country.name = name;
    country.isAvailable = true;
    m_list.countriesById.insert(id, country);
    m_list.countriesByCode.insert(code, country);
    return *this;
}

ServerListMaker& ServerListMaker::server(int countryId, const QString& name, int load,
                                         bool available, bool recommended)
{
    VpnServerInformation server;
    server.countryId = countryId;
    server.name = name;
    server.host = name + QStringLiteral(".vpn.test");
    server.load = load;
    server.isAvailable = available;
    server.isRecommended = recommended;
    server.hasAccountData = true;
    server.vpnUsername = QStringLiteral("vpn-user");
    server.vpnPassword = QStringLiteral("vpn-password");
    m_list.serversByCountry[countryId].append(server);
    return *this;
}

ServerListGettingResult ServerListMaker::list(int status) const
{
    ServerListGettingResult list = m_list;
    list.status = status;
    return list;
}

} // namespace tavero::test
