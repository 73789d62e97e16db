#pragma once

#include "api/endpoints.h"
#include "api/iserverapi.h"
#include "api/logoutbroadcaster.h"

#include <QJsonObject>
#include <QMutex>
#include <QRecursiveMutex>
#include <chrono>
#include <functional>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

namespace tavero {

// The one client of the VPN service's HTTPS JSON API, of the IP-information service and of the
// reachability probe.
//
// Every operation blocks its calling thread and waits in a local event loop of that thread for at
// most the request limit; events of that thread, re-entry included, keep running during the wait.
// Failures come back as a result status, never thrown. Each thread keeps one network manager for
// its life, so its exchanges share kept-alive connections; routesChanged() makes every thread
// drop them when a tunnel comes or goes (see there). The reachability probe always opens its own.
//
// An expired token ("token_expired" to a request sent with the token) is renewed through
// "/refresh" once and the request repeated once; the refresh exchange itself is never renewed, so
// a call makes at most three exchanges. Renewals are serialised across threads: a request whose
// token another exchange has renewed meanwhile is simply repeated with the new token. When
// renewing fails and the client holds no newer token, needLogout is raised and the caller gets
// the expired reply (status 1); every later expired reply tries again.
//
// Process-wide state (shared by every instance, as the product has one): the two server-list
// caches (299 s, one mutex each), the flag-picture cache (read-write lock, never held across a
// download), the per-thread network managers and the protocol permission flags.
class ServerApi final : public IServerApi {
public:
    // Milliseconds on a clock that never goes back; ages of the list caches are measured on it.
    using MonotonicClock = std::function<qint64()>;

    static constexpr std::chrono::milliseconds defaultRequestTimeout{30000};
    static constexpr qint64 listCacheSeconds = 299;

    static qint64 steadyMilliseconds();

    // `requestTimeout` limits every exchange; `clock` ages the list caches. Tests shorten both;
    // the product keeps the defaults. A readable `endpoints.caFile` becomes the trust for the
    // endpoints' hosts (ServiceTrust); other hosts keep the system's.
    explicit ServerApi(Endpoints endpoints = Endpoints::fromEnvironment(),
                       std::chrono::milliseconds requestTimeout = defaultRequestTimeout,
                       MonotonicClock clock = &ServerApi::steadyMilliseconds);
    ServerApi(const ServerApi&) = delete;
    ServerApi& operator=(const ServerApi&) = delete;
    ~ServerApi();

    LoginResult loginByEmail(const QString& email, const QString& password) override;
    IpGettingResult receiveIp() override;
    LogoutBroadcaster& logoutBroadcaster() override;
    QString token() override;
    void setToken(const QString& token) override;
    // Served from the cache while the last "/user" record holds VPN data; every login clears it.
    AccountInfoGettingResult receiveAccountInfo() override;
    ServerListGettingResult receiveServerList() override;
    // The cache does not depend on `ip`: within 299 s the list fetched for any address is served.
    ServerListGettingResult receiveRecommendedServerList(const QString& ip) override;
    LastVersionGettingResult receiveLastVersion() override;
    // PNG bytes, empty when the service has none; every answer (empty too) is kept for the process.
    QByteArray receiveFlagPicture(const QString& countryCode, FlagPictureSize size) override;
    bool isThereInternet() override;

    const Endpoints& endpoints() const { return m_endpoints; }

    // Process-wide permissions, true at start; start-up clears the first two without
    // administrator rights.
    static bool isKillswitchAllowed();
    static void setIsKillswitchAllowed(bool allowed);
    static bool isOpenVpnAllowed();
    static void setIsOpenVpnAllowed(bool allowed);
    static bool isIKEv2Allowed();
    static void setIsIKEv2Allowed(bool allowed);

    // Forgets the process-wide list and flag caches, as in a fresh process. For tests.
    static void resetSharedCaches();

    // The text sent with every forced log-out, translated in context "QObject" when raised.
    static QString logoutText();

    // The routes may have changed (a tunnel came up or went down): a kept-alive connection opened
    // before would carry later exchanges, the IP check included, past the tunnel or into a dead
    // one. Every thread drops its kept-alive connections before its next exchange; while
    // `unsettled` (a tunnel is being brought up or verified), every exchange opens a connection of
    // its own. Any thread may call it; the connection engine does on every mode change.
    static void routesChanged(bool unsettled);

private:
    enum class Expiry {
        RefreshAndRepeat, // first attempt: renew the token once and repeat
        Logout,           // repeated attempt: an expired reply ends in a forced log-out
        Ignore,           // the refresh exchange itself: its reply is judged by the caller
    };
    enum class Renewal {
        Renewed, // the client holds a newer token than the expired one
        Pending, // failed here, but a renewal below on this thread's stack decides
        Failed,
    };
    struct ListCache;
    struct SentRequest {
        std::shared_ptr<QNetworkAccessManager> manager; // the thread's, or this exchange's own
        std::unique_ptr<QNetworkReply> reply;           // destroyed before the manager
        QString token;                                  // the token the request carried, if any
    };

    QByteArray request(const QString& url, bool isGet, const QJsonObject& body, bool withToken,
                       bool useSslConfiguration);
    QByteArray exchange(const QString& url, bool isGet, const QJsonObject& body, bool withToken,
                        bool useSslConfiguration, Expiry expiry);
    SentRequest sendRequest(const QString& url, bool isGet, const QJsonObject& body, bool withToken,
                            bool useSslConfiguration);
    void prepareRequest(const QString& url, QNetworkRequest& request,
                        bool useSslConfiguration) const;
    QString addToken(QNetworkRequest& request);
    void waitForReply(QNetworkReply* reply) const;
    bool refreshToken();
    Renewal renewToken(const QString& expired);
    LoginResult login(const QString& url, const QJsonObject& body);
    ServerListGettingResult receiveList(ListCache& cache, const QString& url, bool isFullList);
    static ListCache& fullListCache();
    static ListCache& recommendedListCache();

    const Endpoints m_endpoints;
    const std::chrono::milliseconds m_requestTimeout;
    const MonotonicClock m_clock;

    QMutex m_tokenMutex;
    QString m_token;
    // Held across a renewal: another thread that needs one waits (at most the request limit) and
    // then finds the new token; a nested renewal on the same thread goes on.
    QRecursiveMutex m_renewalMutex;

    QMutex m_accountMutex;
    bool m_hasAccountInfo = false;
    AccountInfoGettingResult m_accountInfo;
    quint64 m_loginGeneration = 0; // a "/user" reply that overlaps a login is not cached

    std::shared_ptr<LogoutBroadcaster> m_logoutBroadcaster;
};

} // namespace tavero
