#pragma once

#include <QMetaType>
#include <QString>

// One VPN server. Identity is (countryId, name, host); load and credentials do not count.
struct VpnServerInformation {
    int countryId = -1;
    bool isAvailable = false;
    bool isRecommended = false;
    int load = 0;
    QString name;
    QString host;
    bool hasOvpnConfig = false;
    bool hasAccountData = false;
    QString vpnUsername;
    QString vpnPassword;
    QString sharedKey;

    bool operator==(const VpnServerInformation& other) const;
    bool operator!=(const VpnServerInformation& other) const { return !(*this == other); }
};

Q_DECLARE_METATYPE(VpnServerInformation)
