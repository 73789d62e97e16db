#pragma once

#include "api/requestresult.h"

struct LastVersionGettingResult : RequestResult {
    QString version;
    int versionInt = 0; // meaningful only when status is Ok
    QString url;
    QString changelog;
};
