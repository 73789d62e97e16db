#include "devservice.h"

#include "pki.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <sstream>

#ifndef TAVERO_DEVSERVICE_SOURCE_DIR
#define TAVERO_DEVSERVICE_SOURCE_DIR "."
#endif

namespace tavero::devservice {

namespace {

const char faultHeader[] = "X-Tavero-Fault";

QString q(const std::string& text)
{
    return QString::fromStdString(text);
}

void sendJson(httplib::Response& response, int status, const QJsonObject& object)
{
    response.status = status;
    response.set_content(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString(),
                         "application/json");
}

QJsonObject errorObject(const char* error, const char* message)
{
    return {{"error", error}, {"message", message}};
}

bool isLoopback(const std::string& address)
{
    return address.rfind("127.", 0) == 0 || address == "::1" ||
           address.rfind("::ffff:127.", 0) == 0;
}

std::string bearerToken(const httplib::Request& request)
{
    const std::string header = request.get_header_value("Authorization");
    const std::string prefix = "Bearer ";
    return header.rfind(prefix, 0) == 0 ? header.substr(prefix.size()) : std::string();
}

std::vector<std::string> commaSeparated(const std::string& text)
{
    std::vector<std::string> parts;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, ',');)
        parts.push_back(part);
    return parts;
}

int intParam(const httplib::Request& request, const char* name, int fallback)
{
    if (!request.has_param(name))
        return fallback;
    try {
        return std::stoi(request.get_param_value(name));
    } catch (const std::exception&) {
        return fallback;
    }
}

QJsonObject ok(QJsonObject object = {})
{
    object.insert("ok", true);
    return object;
}

} // namespace

DevService::DevService(DevServiceOptions options)
    : m_options(std::move(options))
    , m_tokens(std::chrono::seconds(m_options.tokenLifetimeSeconds))
{}

DevService::~DevService()
{
    stop();
}

std::string DevService::advertisedAddress() const
{
    return m_options.bindAddress == "0.0.0.0" ? "127.0.0.1" : m_options.bindAddress;
}

bool DevService::start(std::string& error)
{
    if (m_options.ikev2) {
        // Everything is served inside the responder's namespace; the pool is "protected".
        m_options.bindAddress = Ikev2Responder::serviceAddress;
        if (m_options.vpnPool.empty())
            m_options.vpnPool = Ikev2Responder::pool;
    }
    if (!m_options.vpnPool.empty()) {
        const auto pool = Ipv4Pool::parse(m_options.vpnPool);
        if (!pool) {
            error = "--vpn-pool is not an IPv4 CIDR: " + m_options.vpnPool;
            return false;
        }
        m_pool = *pool;
    }
    if (!QDir().mkpath(q(m_options.stateDir))) {
        error = "cannot create the state directory " + m_options.stateDir;
        return false;
    }
    m_stateDir = QDir(q(m_options.stateDir)).absolutePath().toStdString();

    std::vector<std::string> extraAddresses;
    const std::string address = advertisedAddress();
    if (address != "127.0.0.1" && address != "localhost")
        extraAddresses.push_back(address);
    if (!Pki::ensure(m_stateDir, std::string(TAVERO_DEVSERVICE_SOURCE_DIR) + "/make-pki",
                     extraAddresses, error))
        return false;

    auto seed = SeedData::load(m_options.dataFile, error);
    if (!seed || !seed->loadCertificates(m_stateDir, error))
        return false;
    m_seed = std::move(*seed);
    m_homeCountryCode = m_seed.homeCountryCode;
    if (m_options.ikev2 && !startIkev2Responder(error))
        return false;

    m_https = std::make_unique<httplib::SSLServer>((m_stateDir + "/https.pem").c_str(),
                                                   (m_stateDir + "/https.key").c_str());
    if (!m_https->is_valid()) {
        error = "the HTTPS certificate in " + m_stateDir + " cannot be used";
        return false;
    }
    for (httplib::Server* server : {static_cast<httplib::Server*>(m_https.get()), &m_probe}) {
        // Small replies must not wait for a delayed ACK.
        server->set_tcp_nodelay(true);
        // An idle kept-alive connection holds a worker until this runs out, also at shutdown.
        server->set_keep_alive_timeout(m_options.keepAliveSeconds);
        // Clients keep their connections as long as the service lets them (the library's own
        // default closes every fifth request's connection).
        server->set_keep_alive_max_count(1000);
        server->new_task_queue = [] { return new httplib::ThreadPool(24); };
        server->set_error_handler([](const Request&, Response& response) {
            if (!response.body.empty() || response.has_header(faultHeader))
                return;
            if (response.status == 404)
                sendJson(response, 404, errorObject("not_found", "No such endpoint or method"));
            else // 400 is also what a POST without Content-Length gets
                sendJson(response, response.status,
                         errorObject("bad_request", "The request could not be read"));
        });
        if (m_options.verbose) {
            server->set_logger([](const Request& request, const Response& response) {
                std::fprintf(stderr, "%s %s %s -> %d\n", request.remote_addr.c_str(),
                             request.method.c_str(), request.target.c_str(), response.status);
            });
        }
    }
    installApi();
    installIpInformation();
    installControl();
    installProbe();

    m_httpsPort = m_options.httpsPort == 0 ? m_https->bind_to_any_port(m_options.bindAddress)
                  : m_https->bind_to_port(m_options.bindAddress, m_options.httpsPort)
                      ? m_options.httpsPort
                      : -1;
    m_httpPort = m_options.httpPort == 0 ? m_probe.bind_to_any_port(m_options.bindAddress)
                 : m_probe.bind_to_port(m_options.bindAddress, m_options.httpPort)
                     ? m_options.httpPort
                     : -1;
    if (m_httpsPort <= 0 || m_httpPort <= 0) {
        error = "cannot listen on " + m_options.bindAddress + " (HTTPS port " +
                std::to_string(m_options.httpsPort) + ", HTTP port " +
                std::to_string(m_options.httpPort) + ")";
        return false;
    }
    if (!m_tunnels.start(m_options.bindAddress, m_options.tunnelPort, error))
        return false;
    m_httpsThread = std::thread([this] { m_https->listen_after_bind(); });
    m_probeThread = std::thread([this] { m_probe.listen_after_bind(); });
    return true;
}

std::string DevService::readyLine() const
{
    const std::string host = advertisedAddress();
    const std::string api = "https://" + host + ":" + std::to_string(m_httpsPort);
    QJsonObject ready{
        {"api", q(api)},
        {"ipinfo", q(api + "/json")},
        {"probe", q("http://" + host + ":" + std::to_string(m_httpPort) + "/")},
        {"ca", q(m_stateDir + "/ca.pem")},
        {"tunnel", q(host + ":" + std::to_string(m_tunnels.port()))},
        {"control", q(api + "/_control")},
        {"state", q(m_stateDir)},
    };
    if (m_ikev2) {
        ready.insert("ikev2", q(m_ikev2->host()));
        ready.insert("netns", q(m_ikev2->clientNamespace()));
        ready.insert("ikev2Netns", q(m_ikev2->serverNamespace()));
        ready.insert("ikev2Dns", q(Ikev2Responder::serviceAddress));
    }
    return QJsonDocument(ready).toJson(QJsonDocument::Compact).toStdString();
}

void DevService::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_stopMutex);
        m_stopping = true;
    }
    m_stopCondition.notify_all();
    if (m_https)
        m_https->stop();
    m_probe.stop();
    if (m_httpsThread.joinable())
        m_httpsThread.join();
    if (m_probeThread.joinable())
        m_probeThread.join();
    m_tunnels.stop();
}

void DevService::waitUnlessStopping(int milliseconds)
{
    std::unique_lock<std::mutex> lock(m_stopMutex);
    m_stopCondition.wait_for(lock, std::chrono::milliseconds(milliseconds),
                             [this] { return m_stopping; });
}

httplib::Server::HandlerResponse DevService::beforeRouting(const Request& request,
                                                           Response& response,
                                                           const std::string& journalPath)
{
    using Result = httplib::Server::HandlerResponse;
    if (request.path.rfind("/_control", 0) == 0) {
        // Inside the responder's namespace the only neighbour is the client namespace beside it.
        if (isLoopback(request.remote_addr) ||
            (m_ikev2 && request.remote_addr == Ikev2Responder::clientAddress))
            return Result::Unhandled;
        sendJson(response, 403, errorObject("forbidden", "Control endpoints answer loopback only"));
        return Result::Handled;
    }
    const auto fault = m_faults.take(journalPath);
    if (!fault)
        return Result::Unhandled;
    response.set_header(faultHeader, "1");
    if (fault->delayMs > 0) // every kind of fault can come late
        waitUnlessStopping(fault->delayMs);
    switch (fault->kind) {
    case Fault::Kind::Delay:
        return Result::Unhandled;
    case Fault::Kind::Status:
        sendJson(response, fault->status, errorObject("injected_failure", "Injected failure"));
        break;
    case Fault::Kind::Body:
        response.status = fault->status;
        response.set_content(fault->body, "application/json");
        break;
    case Fault::Kind::Garbage:
        response.status = 200;
        static const char garbage[] = "<html><body>502 Bad Gateway</body></html>\x01\xfe";
        response.set_content(garbage, sizeof garbage - 1, "text/html");
        break;
    case Fault::Kind::Empty:
        response.status = 200;
        response.set_content("", "application/json");
        break;
    case Fault::Kind::Close:
        // Announce a body, then close the connection without sending it.
        response.status = 200;
        response.set_content_provider(1024, "application/json",
                                      [](size_t, size_t, httplib::DataSink&) { return false; });
        break;
    }
    return Result::Handled;
}

void DevService::afterRouting(const Request& request, const std::string& journalPath)
{
    // Recorded once the handler has read the body, before the reply is written: a test that got
    // its answer always finds its request counted.
    if (request.path.rfind("/_control", 0) == 0)
        return;
    m_journal.record({request.method, journalPath, request.target,
                      request.get_header_value("Authorization"), request.get_header_value("Accept"),
                      request.get_header_value("Content-Type"), request.body, request.remote_port});
}

std::optional<std::string> DevService::authorise(const Request& request, Response& response)
{
    std::string email;
    switch (m_tokens.check(bearerToken(request), &email)) {
    case TokenStore::State::Valid:
        return email;
    case TokenStore::State::Expired:
        sendJson(response, 401, errorObject("token_expired", "Token has expired"));
        return std::nullopt;
    case TokenStore::State::Unknown:
        break;
    }
    sendJson(response, 401, errorObject("token_invalid", "Token is invalid"));
    return std::nullopt;
}

void DevService::installApi()
{
    httplib::Server& server = *m_https;
    server.set_pre_routing_handler([this](const Request& request, Response& response) {
        return beforeRouting(request, response, request.path);
    });
    server.set_post_routing_handler(
        [this](const Request& request, Response&) { afterRouting(request, request.path); });

    server.Post("/login", [this](const Request& request, Response& response) {
        const QJsonDocument document =
            QJsonDocument::fromJson(QByteArray::fromStdString(request.body));
        if (!document.isObject()) {
            sendJson(response, 400, errorObject("bad_request", "The body is not a JSON object"));
            return;
        }
        const std::string email = document.object().value("email").toString().toStdString();
        const std::string password = document.object().value("password").toString().toStdString();
        const SeedData::Account* account = m_seed.account(email);
        if (!account || account->password != password) {
            sendJson(response, 401, errorObject("invalid_credentials", "invalid_user_credentials"));
            return;
        }
        const QJsonObject data{{"token", q(m_tokens.issue(email))},
                               {"token_type", "bearer"},
                               {"expires_in", static_cast<int>(m_tokens.lifetime().count())}};
        sendJson(response, 200, {{"data", data}});
    });

    server.Get("/refresh", [this](const Request& request, Response& response) {
        const auto renewed = m_tokens.refresh(bearerToken(request));
        if (!renewed) {
            sendJson(response, 401, errorObject("token_invalid", "The token cannot be refreshed"));
            return;
        }
        sendJson(response, 200, {{"data", QJsonObject{{"token", q(*renewed)}}}});
    });

    server.Get("/user", [this](const Request& request, Response& response) {
        const auto email = authorise(request, response);
        if (!email)
            return;
        const SeedData::Account* account = m_seed.account(*email);
        if (!account) {
            sendJson(response, 404, errorObject("not_found", "No such user"));
            return;
        }
        std::vector<std::string> scope{"appp", "subscription", "vpn"};
        if (request.has_param("scope"))
            scope = commaSeparated(request.get_param_value("scope"));
        const auto wanted = [&](const char* part) {
            return std::find(scope.begin(), scope.end(), part) != scope.end();
        };
        QJsonObject data{{"email", q(account->email)}};
        if (wanted("appp"))
            data.insert("appp", QJsonObject{{"data", QJsonObject{
                                                         {"username", q(account->vpnUsername)},
                                                         {"password", q(account->vpnPassword)},
                                                         {"shared_key", q(account->sharedKey)},
                                                     }}});
        if (wanted("subscription"))
            data.insert("subscription", QJsonObject{{"data", QJsonObject{{"plan", q(account->plan)},
                                                                         {"active", true}}}});
        if (wanted("vpn"))
            data.insert("vpn", QJsonObject{{"data", QJsonObject{
                                                        {"ca", q(account->ca)},
                                                        {"pbk", q(account->certificate)},
                                                        {"prk", q(account->key)},
                                                    }}});
        sendJson(response, 200, {{"data", data}});
    });

    const auto serverList = [this](const Request& request, Response& response,
                                   bool recommendedOnly) {
        if (!authorise(request, response))
            return;
        std::vector<std::string> scope{"country", "config"};
        if (request.has_param("scope"))
            scope = commaSeparated(request.get_param_value("scope"));
        const bool withCountry =
            recommendedOnly || std::count(scope.begin(), scope.end(), "country");
        const bool withConfig = recommendedOnly || std::count(scope.begin(), scope.end(), "config");

        const std::lock_guard<std::mutex> lock(m_seedMutex);
        std::vector<const SeedData::Server*> servers;
        for (const SeedData::Server& server : m_seed.servers) {
            if (!recommendedOnly || server.recommended)
                servers.push_back(&server);
        }
        if (recommendedOnly) {
            std::stable_sort(servers.begin(), servers.end(),
                             [](auto* a, auto* b) { return a->load < b->load; });
        }
        QJsonArray data;
        for (const SeedData::Server* server : servers) {
            QJsonObject element{{"id", static_cast<int>(server - m_seed.servers.data()) + 1},
                                {"name", q(server->name)},
                                {"is_recom", server->recommended},
                                {"load", server->load}};
            const SeedData::Country* country = m_seed.country(server->countryId);
            if (withCountry && country)
                element.insert("country", QJsonObject{{"id", country->id},
                                                      {"code", q(country->code)},
                                                      {"name", q(country->name)}});
            if (withConfig) {
                QJsonObject config{{"host", q(server->host)}};
                if (server->ovpn)
                    config.insert("ovpn", QJsonObject{{"udp", 1194}, {"tcp", 443}});
                element.insert("config", config);
            }
            data.append(element);
        }
        sendJson(response, 200, {{"data", data}});
    };
    server.Get("/hotspots", [serverList](const Request& request, Response& response) {
        serverList(request, response, false);
    });
    server.Get("/hotspots/recommended", [serverList](const Request& request, Response& response) {
        serverList(request, response, true);
    });

    server.Get(R"(/versions/([a-z]+)/([a-z]+))",
               [this](const Request& request, Response& response) {
                   const SeedData::Version& version = m_seed.version;
                   const std::string url =
                       "https://" + request.get_header_value("Host") + version.downloadPath;
                   sendJson(response, 200,
                            {{"data", QJsonObject{{"version", q(version.version)},
                                                  {"version_int", version.versionInt},
                                                  {"url", q(url)},
                                                  {"changelog", q(version.changelog)}}}});
               });

    // Any name serves a stand-in installer: 64 KiB, or "?size=N" bytes (at most 64 MiB). It goes
    // out in 16 KiB pieces; "?chunked=1" sends them without a length, as some download servers
    // do, and "?pace=MS" (at most 1000) waits that long before each piece, so a client sees the
    // download progress.
    server.Get(R"(/downloads/[A-Za-z0-9._-]+)", [this](const Request& request, Response& response) {
        const auto number = [&request](const char* name, std::size_t fallback,
                                       std::size_t maximum) -> std::optional<std::size_t> {
            if (!request.has_param(name))
                return fallback;
            const std::string text = request.get_param_value(name);
            if (text.empty() || text.size() > 9 ||
                text.find_first_not_of("0123456789") != std::string::npos)
                return std::nullopt;
            const std::size_t value = std::stoul(text);
            return value <= maximum ? std::optional<std::size_t>(value) : std::nullopt;
        };
        const std::optional<std::size_t> size = number("size", 64 * 1024, 64u << 20);
        const std::optional<std::size_t> pace = number("pace", 0, 1000);
        if (!size || !pace) {
            sendJson(response, 400,
                     errorObject("bad_download", "size must be 0 to 67108864, pace 0 to 1000"));
            return;
        }
        auto installer = std::make_shared<std::string>("TAVERO DEVELOPMENT INSTALLER\n");
        installer->resize(*size, '.');
        const int paceMs = static_cast<int>(*pace);
        const auto piece = [this, installer, paceMs](std::size_t offset, httplib::DataSink& sink) {
            constexpr std::size_t pieceSize = 16 * 1024;
            if (paceMs > 0)
                waitUnlessStopping(paceMs);
            const std::size_t length = std::min(pieceSize, installer->size() - offset);
            return sink.write(installer->data() + offset, length);
        };
        if (request.get_param_value("chunked") == "1") {
            response.set_chunked_content_provider(
                "application/octet-stream",
                [installer, piece](std::size_t offset, httplib::DataSink& sink) {
                    if (offset >= installer->size()) {
                        sink.done();
                        return true;
                    }
                    return piece(offset, sink);
                });
        } else if (paceMs > 0) {
            response.set_content_provider(
                installer->size(), "application/octet-stream",
                [piece](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                    return piece(offset, sink);
                });
        } else {
            response.set_content(*installer, "application/octet-stream");
        }
    });

    server.Get(R"(/flags/(640x480|60x45)/([A-Za-z]{2,3})\.png)", [this](const Request& request,
                                                                        Response& response) {
        const std::string size = request.matches[1];
        const QString code = q(request.matches[2]).toLower();
        QFile file(q(m_seed.flagsDir + "/" + size + "/") + code + ".png");
        if (!file.open(QIODevice::ReadOnly)) {
            sendJson(response, 404, errorObject("not_found", "No flag picture for this country"));
            return;
        }
        response.set_content(file.readAll().toStdString(), "image/png");
    });
}

void DevService::installIpInformation()
{
    m_https->Get("/json", [this](const Request& request, Response& response) {
        bool isProtected = false;
        std::string ip = request.remote_addr;
        std::string countryCode;
        {
            const std::lock_guard<std::mutex> lock(m_seedMutex);
            countryCode = m_homeCountryCode;
            const auto tunnels = m_tunnels.open();
            if (m_pool.contains(request.remote_addr)) {
                isProtected = true;
            } else if (!tunnels.empty()) {
                isProtected = true;
                const SeedData::Server* server = m_seed.serverByHost(tunnels.back().host);
                const SeedData::Country* country =
                    server ? m_seed.country(server->countryId) : nullptr;
                ip = server ? server->exitIp : m_seed.homeUnknownTunnelIp;
                if (country)
                    countryCode = q(country->code).toUpper().toStdString();
            }
        }
        sendJson(response, 200,
                 {{"ip", q(ip)}, {"protected", isProtected}, {"country_code", q(countryCode)}});
    });
}

bool DevService::startIkev2Responder(std::string& error)
{
    std::vector<std::string> accounts;
    for (const SeedData::Account& account : m_seed.accounts)
        accounts.push_back(account.vpnUsername + ":" + account.vpnPassword);
    m_ikev2 = std::make_unique<Ikev2Responder>();
    if (!m_ikev2->start(m_stateDir + "/ikev2", m_stateDir, accounts, error) ||
        !m_ikev2->enterNamespace(error))
        return false;
    // Every server is dialled at the responder.
    for (SeedData::Server& server : m_seed.servers)
        server.host = m_ikev2->host();
    return true;
}

void DevService::installControl()
{
    httplib::Server& server = *m_https;
    server.Post("/_control/ikev2", [this](const Request& request, Response& response) {
        if (!m_ikev2) {
            sendJson(response, 404, errorObject("not_found", "no IKEv2 responder (--ikev2)"));
            return;
        }
        if (!m_ikev2->setAccepting(intParam(request, "accept", 1) != 0)) {
            sendJson(response, 500, errorObject("responder", "the responder did not answer"));
            return;
        }
        sendJson(response, 200, ok());
    });
    server.Post("/_control/tokens/expire", [this](const Request& request, Response& response) {
        m_tokens.expireAll(intParam(request, "revoke", 0) != 0);
        sendJson(response, 200, ok());
    });
    server.Post("/_control/tokens/lifetime", [this](const Request& request, Response& response) {
        const int seconds = intParam(request, "seconds", -1);
        if (seconds < 0) {
            sendJson(response, 400, errorObject("bad_request", "seconds must be 0 or more"));
            return;
        }
        m_tokens.setLifetime(std::chrono::seconds(seconds));
        sendJson(response, 200, ok());
    });
    server.Post("/_control/fail", [this](const Request& request, Response& response) {
        const auto kind = Fault::kindFromName(
            request.has_param("mode") ? request.get_param_value("mode") : std::string("status"));
        const std::string path = request.get_param_value("path");
        const int count = intParam(request, "count", 1);
        if (!kind || path.empty() || count < 1) {
            sendJson(response, 400,
                     errorObject("bad_request", "needs path, count >= 1 and a known mode"));
            return;
        }
        Fault fault;
        fault.kind = *kind;
        fault.status = intParam(request, "status", *kind == Fault::Kind::Body ? 200 : 500);
        fault.delayMs = intParam(request, "delay_ms", 0);
        fault.body = request.body;
        m_faults.add(path, count, fault);
        sendJson(response, 200, ok());
    });
    server.Get("/_control/counters", [this](const Request&, Response& response) {
        QJsonObject counts;
        for (const auto& [path, count] : m_journal.counts())
            counts.insert(q(path), count);
        sendJson(response, 200, {{"counts", counts}});
    });
    server.Post("/_control/counters/reset", [this](const Request&, Response& response) {
        m_journal.reset();
        sendJson(response, 200, ok());
    });
    server.Get("/_control/requests", [this](const Request&, Response& response) {
        QJsonArray entries;
        for (const RequestJournal::Entry& entry : m_journal.entries()) {
            entries.append(QJsonObject{{"method", q(entry.method)},
                                       {"path", q(entry.path)},
                                       {"target", q(entry.target)},
                                       {"authorization", q(entry.authorization)},
                                       {"accept", q(entry.accept)},
                                       {"content_type", q(entry.contentType)},
                                       {"body", q(entry.body)},
                                       {"client_port", entry.clientPort}});
        }
        sendJson(response, 200, {{"requests", entries}});
    });
    server.Post("/_control/tunnel/drop", [this](const Request&, Response& response) {
        m_tunnels.dropAll();
        sendJson(response, 200, ok());
    });
    server.Get("/_control/tunnels", [this](const Request&, Response& response) {
        QJsonArray tunnels;
        for (const TunnelRegistry::Tunnel& tunnel : m_tunnels.open())
            tunnels.append(QJsonObject{{"host", q(tunnel.host)}, {"protocol", q(tunnel.protocol)}});
        sendJson(response, 200, {{"tunnels", tunnels}});
    });
    server.Get("/_control/accounts", [this](const Request&, Response& response) {
        QJsonArray accounts;
        for (const SeedData::Account& account : m_seed.accounts) {
            accounts.append(QJsonObject{{"email", q(account.email)},
                                        {"password", q(account.password)},
                                        {"vpn_username", q(account.vpnUsername)},
                                        {"vpn_password", q(account.vpnPassword)},
                                        {"shared_key", q(account.sharedKey)}});
        }
        sendJson(response, 200, {{"accounts", accounts}});
    });
    server.Post("/_control/home", [this](const Request& request, Response& response) {
        const std::lock_guard<std::mutex> lock(m_seedMutex);
        m_homeCountryCode = q(request.get_param_value("country_code")).toUpper().toStdString();
        sendJson(response, 200, ok());
    });
    server.Post("/_control/hotspots/host", [this](const Request& request, Response& response) {
        const std::string host = request.get_param_value("host");
        const std::string name = request.get_param_value("name");
        if (host.empty()) {
            sendJson(response, 400, errorObject("bad_request", "needs host"));
            return;
        }
        const std::lock_guard<std::mutex> lock(m_seedMutex);
        int changed = 0;
        for (SeedData::Server& server : m_seed.servers) {
            if (name.empty() || server.name == name) {
                server.host = host;
                ++changed;
            }
        }
        sendJson(response, 200, ok({{"changed", changed}}));
    });
    server.Post("/_control/reset", [this](const Request&, Response& response) {
        m_faults.clear();
        m_journal.reset();
        m_tokens.setLifetime(std::chrono::seconds(m_options.tokenLifetimeSeconds));
        {
            const std::lock_guard<std::mutex> lock(m_seedMutex);
            m_homeCountryCode = m_seed.homeCountryCode;
        }
        sendJson(response, 200, ok());
    });
}

void DevService::installProbe()
{
    m_probe.set_pre_routing_handler([this](const Request& request, Response& response) {
        return beforeRouting(request, response, "probe:" + request.path);
    });
    m_probe.set_post_routing_handler([this](const Request& request, Response&) {
        afterRouting(request, "probe:" + request.path);
    });
    m_probe.Get(R"(/.*)", [](const Request&, Response& response) {
        response.set_content("Tavero reachability probe\n", "text/plain");
    });
}

} // namespace tavero::devservice
