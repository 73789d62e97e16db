#include "api/accountinfogettingresult.h"

bool AccountInfoGettingResult::hasVPNData() const
{
    return !caCertificate.isEmpty() && !publicKey.isEmpty() && !privateKey.isEmpty();
}
