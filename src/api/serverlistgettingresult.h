#pragma once

#include "api/countryinformation.h"
#include "api/requestresult.h"
#include "api/vpnserverinformation.h"

#include <QMap>
#include <QVector>

struct ServerListGettingResult : RequestResult {
    QMap<int, QVector<VpnServerInformation>> serversByCountry; // reply order within a country
    QMap<int, CountryInformation> countriesById;
    QMap<QString, CountryInformation> countriesByCode;
};
