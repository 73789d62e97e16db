#pragma once

#include "api/requestresult.h"

struct IpGettingResult : RequestResult {
    bool isProtected = false;
    QString ip;
    QString countryCode; // always lower case
};
