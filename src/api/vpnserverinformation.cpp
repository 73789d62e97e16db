#include "api/vpnserverinformation.h"

bool VpnServerInformation::operator==(const VpnServerInformation& other) const
{
    return countryId == other.countryId && name == other.name && host == other.host;
}
