#pragma once

#include "api/serverlistgettingresult.h"

namespace tavero::test {

// Builds server lists: countries and their servers in reply order, with the lookup maps filled
// as the service client fills them.
class ServerListMaker {
public:
    ServerListMaker& country(int id, const QString& code, const QString& name);
    // A country id the country list lacks makes an orphan server. Every server has account
    // data, which lets the IKEv2 adapter take the server, so a chain over TestPlatform
    // connects to it.
    ServerListMaker& server(int countryId, const QString& name, int load, bool available = true,
                            bool recommended = false);
    ServerListGettingResult list(int status = RequestResult::Ok) const;

private:
    ServerListGettingResult m_list;
};

} // namespace tavero::test
