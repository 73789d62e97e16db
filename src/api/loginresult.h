#pragma once

#include "api/requestresult.h"

struct LoginResult : RequestResult {
    QString token;
};
