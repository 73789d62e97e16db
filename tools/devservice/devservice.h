#pragma once

#include "devserviceoptions.h"
#include "faultplan.h"
#include "ikev2responder.h"
#include "ipv4pool.h"
#include "requestjournal.h"
#include "seeddata.h"
#include "tokenstore.h"
#include "tunnelregistry.h"

#include <condition_variable>
#include <httplib.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tavero::devservice {

// The local development service: the VPN service's HTTPS JSON API and the IP-information service
// ("/json") on one HTTPS port, the plain-HTTP reachability probe, the stand-in tunnel port and the
// loopback-only control endpoints under "/_control" (tools/devservice/README.md lists them).
class DevService {
public:
    explicit DevService(DevServiceOptions options);
    DevService(const DevService&) = delete;
    DevService& operator=(const DevService&) = delete;
    ~DevService();

    // Makes the PKI when needed, loads the seed, starts listening. False with `error` set when
    // anything is missing; nothing keeps running then.
    bool start(std::string& error);
    // One line of JSON naming every address, the CA file and the state directory.
    std::string readyLine() const;
    void stop();

private:
    using Request = httplib::Request;
    using Response = httplib::Response;

    void installApi();
    void installIpInformation();
    void installControl();
    bool startIkev2Responder(std::string& error);
    void installProbe();
    httplib::Server::HandlerResponse beforeRouting(const Request& request, Response& response,
                                                   const std::string& journalPath);
    void afterRouting(const Request& request, const std::string& journalPath);
    // Email of the token's account, or nothing with the error reply already made.
    std::optional<std::string> authorise(const Request& request, Response& response);
    void waitUnlessStopping(int milliseconds);
    std::string advertisedAddress() const;

    DevServiceOptions m_options;
    std::string m_stateDir;
    std::string m_homeCountryCode; // guarded by m_seedMutex, like the servers' hosts
    mutable std::mutex m_seedMutex;
    SeedData m_seed;
    Ipv4Pool m_pool;
    TokenStore m_tokens;
    FaultPlan m_faults;
    RequestJournal m_journal;
    TunnelRegistry m_tunnels;
    std::unique_ptr<Ikev2Responder> m_ikev2;
    std::unique_ptr<httplib::SSLServer> m_https;
    httplib::Server m_probe;
    std::thread m_httpsThread;
    std::thread m_probeThread;
    int m_httpsPort = 0;
    int m_httpPort = 0;

    std::mutex m_stopMutex;
    std::condition_variable m_stopCondition;
    bool m_stopping = false;
};

} // namespace tavero::devservice
