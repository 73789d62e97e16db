#pragma once

#include "api/requestresult.h"

struct AccountInfoGettingResult : RequestResult {
    QString email;
    QString caCertificate;
    QString publicKey;
    QString privateKey;
    QString vpnUsername;
    QString vpnPassword;
    QString sharedKey;

    // True when all three certificate texts an OpenVPN configuration needs are present.
    bool hasVPNData() const;
};
