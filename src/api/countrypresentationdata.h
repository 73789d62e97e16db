#pragma once

#include "api/countryinformation.h"
#include "api/vpnserverinformation.h"

#include <QImage>
#include <QVector>

// One country row of the server selection page.
struct CountryPresentationData {
    QImage flagImage; // small flag, null when none
    CountryInformation country;
    QVector<VpnServerInformation> servers; // display order
};
