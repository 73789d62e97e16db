#pragma once

#include <QString>

class QNetworkRequest;

namespace tavero {

struct Endpoints;

// Trust for a development or test service: the certificates of `Endpoints::caFile` are the trusted
// CAs for the hosts (and ports) of those endpoints, and for nothing else. Every other host keeps
// the system's trust, loaded by the TLS library on demand. Reading the whole system store to add
// one CA to it took about 0.4 s in every process, longer than the rest of a command-line connect.
// Certificates are always verified, host name included. Process-wide and thread-safe; entries
// are only ever added, so a client built later never takes trust away from an earlier one.
class ServiceTrust {
public:
    // Reads `endpoints.caFile` (when set) and trusts its certificates for the endpoints' hosts.
    // An unreadable file, or one without a PEM certificate, is a warning and changes nothing.
    static void add(const Endpoints& endpoints);

    // Gives `request` the TLS configuration for its address: the service's CAs for a service
    // host, the process's default configuration otherwise.
    static void apply(QNetworkRequest& request);
};

} // namespace tavero
