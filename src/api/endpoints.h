#pragma once

#include <QString>

namespace tavero {

// The addresses the service client talks to. The compiled-in values point at the service's fixed
// hosts; development, demos and tests replace them through the environment:
//   TAVERO_API_URL     API base address (https, no trailing slash needed)
//   TAVERO_IPINFO_URL  IP-information address, path "/json" (https)
//   TAVERO_PROBE_URL   reachability probe (http or https)
//   TAVERO_CA_FILE     PEM bundle: the trusted CAs for the hosts above (ServiceTrust)
// An override that is not a valid address of the allowed scheme is ignored with a warning, so a
// typo can never move the API or the IP check to plain HTTP.
struct Endpoints {
    QString apiBaseUrl;
    QString ipInfoUrl;
    QString probeUrl;
    QString caFile; // empty: system CAs everywhere

    static Endpoints defaults();
    static Endpoints fromEnvironment();
};

} // namespace tavero
