#include "api/serverapi.h"

#include "api/replyparser.h"
#include "api/servicetrust.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEventLoop>
#include <QHash>
#include <QJsonDocument>
#include <QMutexLocker>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QReadWriteLock>
#include <QRecursiveMutex>
#include <QScopeGuard>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QThreadStorage>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>
#include <atomic>

namespace tavero {

namespace {

std::atomic<bool> killswitchAllowed{true};
std::atomic<bool> openVpnAllowed{true};
std::atomic<bool> ikev2Allowed{true};

const char logoutTextKey[] =
    QT_TRANSLATE_NOOP("QObject", "warning.authorization_failure_try_again");

// Base address + path, plus "?scope=" with the scope text unchanged (commas included).
QString serviceUrl(const QString& base, const QString& path, const QString& scope)
{
    const QString url = QStringLiteral("%1%2").arg(base, path);
    return scope.isEmpty() ? url : url + QStringLiteral("?scope=%1").arg(scope);
}

// Keeps a text that comes from a reply (an address, a country code) inside its path segment or
// query value: '/', '?', '&', '#' and the like are percent-encoded.
QString asUrlComponent(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text, QByteArrayLiteral(":")));
}

bool isPng(const QByteArray& bytes)
{
    return bytes.startsWith(QByteArrayLiteral("\x89PNG\r\n\x1a\n"));
}

// The flag-picture cache. The lock is never held across a download: a thread waiting for it
// could wait for ever when the downloading thread is itself blocked on that thread (the GUI thread
// joining the server page's row builders inside its wait), and downloads would run one at a time.
struct FlagCache {
    QReadWriteLock lock;
    QHash<QString, QByteArray> pictures;
};
FlagCache& flagCache()
{
    static FlagCache cache;
    return cache;
}

// Bumped by routesChanged(): a thread's manager made under an older value is dropped.
std::atomic<quint64> routeGeneration{0};
std::atomic<bool> routesUnsettled{false};

struct ThreadNetwork {
    std::shared_ptr<QNetworkAccessManager> manager;
    quint64 generation = 0;
};

// Never destroyed, so a thread ending during the process's exit still finds it; the toolkit
// deletes each thread's entry in that thread when it ends (the main thread's with the application
// object).
QThreadStorage<ThreadNetwork*>& threadNetworks()
{
    static auto* const storage = new QThreadStorage<ThreadNetwork*>;
    return *storage;
}

// The calling thread's manager: kept for the thread's life, so its exchanges reuse kept-alive
// connections and their TLS sessions. An exchange holds its manager until it ends, so replacing
// the thread's manager never cuts off an exchange that waits lower on the stack.
std::shared_ptr<QNetworkAccessManager> networkForThisThread()
{
    if (routesUnsettled.load())
        return std::make_shared<QNetworkAccessManager>();
    QThreadStorage<ThreadNetwork*>& storage = threadNetworks();
    if (!storage.hasLocalData())
        storage.setLocalData(new ThreadNetwork);
    ThreadNetwork& network = *storage.localData();
    const quint64 generation = routeGeneration.load();
    if (!network.manager || network.generation != generation) {
        network.manager = std::make_shared<QNetworkAccessManager>();
        network.generation = generation;
    }
    return network.manager;
}

// Renewals running on this thread, nested ones included.
thread_local int renewalsOnThisThread = 0;

// Sets a value for one scope and puts the previous one back.
template <typename T, typename U>
class ScopedValue {
public:
    ScopedValue(T& target, U value)
        : m_target(target)
        , m_previous(target)
    {
        m_target = std::move(value);
    }
    ~ScopedValue() { m_target = m_previous; }
    ScopedValue(const ScopedValue&) = delete;
    ScopedValue& operator=(const ScopedValue&) = delete;

private:
    T& m_target;
    U m_previous;
};

} // namespace

// One server-list cache. The recursive mutex is held across the exchange; `inFlight` is read and
// written only by its holder, so seeing it set means this thread re-entered during its own wait.
struct ServerApi::ListCache {
    QRecursiveMutex mutex;
    bool filled = false;
    ServerListGettingResult result;
    qint64 storedAtMs = 0;
    bool inFlight = false;

    bool hasServers() const { return filled && !result.serversByCountry.isEmpty(); }
};

ServerApi::ListCache& ServerApi::fullListCache()
{
    static ListCache cache;
    return cache;
}

ServerApi::ListCache& ServerApi::recommendedListCache()
{
    static ListCache cache;
    return cache;
}

qint64 ServerApi::steadyMilliseconds()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

ServerApi::ServerApi(Endpoints endpoints, std::chrono::milliseconds requestTimeout,
                     MonotonicClock clock)
    : m_endpoints(std::move(endpoints))
    , m_requestTimeout(requestTimeout)
    , m_clock(clock ? std::move(clock) : MonotonicClock(&ServerApi::steadyMilliseconds))
    , m_logoutBroadcaster(std::make_shared<LogoutBroadcaster>(nullptr))
{
    ServiceTrust::add(m_endpoints);
}

ServerApi::~ServerApi() = default;

// --- request pipeline ---------------------------------------------------------------------------

void ServerApi::prepareRequest(const QString& url, QNetworkRequest& request,
                               bool useSslConfiguration) const
{
    // Going through a query object normalises the address's encoding the same way for every call.
    const QUrlQuery query(url);
    request.setUrl(QUrl(query.query(), QUrl::TolerantMode));
    if (useSslConfiguration) {
        ServiceTrust::apply(request);
        QSslConfiguration configuration = request.sslConfiguration();
        configuration.setProtocol(QSsl::AnyProtocol);
        request.setSslConfiguration(configuration);
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    request.setRawHeader(QByteArrayLiteral("Accept"), QByteArrayLiteral("application/json"));
}

QString ServerApi::addToken(QNetworkRequest& request)
{
    const QString current = token();
    request.setRawHeader(QByteArrayLiteral("Authorization"),
                         QStringLiteral("Bearer %1").arg(current).toLatin1());
    return current;
}

ServerApi::SentRequest ServerApi::sendRequest(const QString& url, bool isGet,
                                              const QJsonObject& body, bool withToken,
                                              bool useSslConfiguration)
{
    SentRequest sent;
    QNetworkRequest request;
    prepareRequest(url, request, useSslConfiguration);
    if (withToken)
        sent.token = addToken(request);
    // A request with a body opens its own connection: the toolkit may resend a request whose
    // connection closed before the reply began, and it resends a POST over a kept-alive
    // connection without its body, which also spoils that connection's later requests.
    sent.manager = isGet ? networkForThisThread() : std::make_shared<QNetworkAccessManager>();
    sent.reply.reset(isGet ? sent.manager->get(request)
                           : sent.manager->post(request, QJsonDocument(body).toJson()));
    return sent;
}

void ServerApi::waitForReply(QNetworkReply* reply) const
{
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    bool ended = false;
    // Ends the wait once; the reply's later signals (an abort emits some) no longer reach us.
    const auto end = [&](bool abort) {
        ended = true;
        timer.stop();
        QObject::disconnect(reply, nullptr, &loop, nullptr);
        if (abort)
            reply->abort();
        loop.quit();
    };

    QObject::connect(reply, &QNetworkReply::finished, &loop, [&] { end(false); });
    QObject::connect(reply, &QNetworkReply::sslErrors, &loop,
                     [](const QList<QSslError>& errors) { qDebug() << "SSL ERROR!" << errors; });
    QObject::connect(
        reply, &QNetworkReply::errorOccurred, &loop, [&](QNetworkReply::NetworkError error) {
            qDebug().noquote() << "OpenSSL was used for the Qt build "
                               << QSslSocket::sslLibraryBuildVersionString();
            qDebug() << "SSL is supported " << QSslSocket::supportsSsl();
            qDebug().noquote() << "Version I have " << QSslSocket::sslLibraryVersionString();
            qDebug() << "!!!!!" << error;
            // Transport failures end the wait; HTTP errors (100 and above) run on to
            // the end so their body is read.
            if (error >= 0 && error <= 99)
                end(true);
        });
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] { end(true); });

    if (reply->isFinished())
        return;
    timer.start(m_requestTimeout);
    if (!ended)
        loop.exec();
}

QByteArray ServerApi::request(const QString& url, bool isGet, const QJsonObject& body,
                              bool withToken, bool useSslConfiguration)
{
    return exchange(url, isGet, body, withToken, useSslConfiguration, Expiry::RefreshAndRepeat);
}

QByteArray ServerApi::exchange(const QString& url, bool isGet, const QJsonObject& body,
                               bool withToken, bool useSslConfiguration, Expiry expiry)
{
    SentRequest sent = sendRequest(url, isGet, body, withToken, useSslConfiguration);
    qDebug().noquote() << "reequest" << url;
    waitForReply(sent.reply.get());
    const QByteArray replyBody = sent.reply->readAll();
    sent.reply.reset();
    sent.manager.reset();

    if (!withToken || expiry == Expiry::Ignore || !ReplyParser::isTokenExpired(replyBody))
        return replyBody;

    if (expiry == Expiry::RefreshAndRepeat) {
        switch (renewToken(sent.token)) {
        case Renewal::Renewed:
            return exchange(url, isGet, body, withToken, useSslConfiguration, Expiry::Logout);
        case Renewal::Pending:
            return replyBody;
        case Renewal::Failed:
            break;
        }
    } else if (token() != sent.token) {
        // The repetition's token was replaced while it waited: the client holds a newer one, and
        // logging the user out would throw it away.
        return replyBody;
    }
    m_logoutBroadcaster->emitLogout(logoutText());
    return replyBody;
}

ServerApi::Renewal ServerApi::renewToken(const QString& expired)
{
    // Bounded, so a thread that the renewing thread waits for (a join inside its nested wait) is
    // never stuck here for good; after the limit it renews on its own.
    const bool locked = m_renewalMutex.tryLock(int(m_requestTimeout.count()));
    const auto unlock = qScopeGuard([&] {
        if (locked)
            m_renewalMutex.unlock();
    });
    // Another exchange renewed (or a login replaced) the token while this one waited.
    if (token() != expired)
        return Renewal::Renewed;
    ++renewalsOnThisThread;
    const bool refreshed = refreshToken();
    --renewalsOnThisThread;
    // A failed refresh lost to another renewal of the same token (the service rotates tokens):
    // the winner's token is what counts.
    if (refreshed || token() != expired)
        return Renewal::Renewed;
    return renewalsOnThisThread > 0 ? Renewal::Pending : Renewal::Failed;
}

bool ServerApi::refreshToken()
{
    const std::optional<QString> renewed = ReplyParser::refreshedToken(
        exchange(serviceUrl(m_endpoints.apiBaseUrl, QStringLiteral("/refresh"), QString()), true,
                 {}, true, true, Expiry::Ignore));
    if (!renewed)
        return false;
    setToken(*renewed);
    return true;
}

LogoutBroadcaster& ServerApi::logoutBroadcaster()
{
    return *m_logoutBroadcaster;
}

QString ServerApi::logoutText()
{
    return QCoreApplication::translate("QObject", logoutTextKey);
}

// --- login and account --------------------------------------------------------------------------

QString ServerApi::token()
{
    const QMutexLocker locker(&m_tokenMutex);
    return m_token;
}

void ServerApi::setToken(const QString& token)
{
    const QMutexLocker locker(&m_tokenMutex);
    m_token = token;
}

LoginResult ServerApi::loginByEmail(const QString& email, const QString& password)
{
    QJsonObject body;
    body.insert(QStringLiteral("email"), email);
    body.insert(QStringLiteral("password"), password);
    return login(serviceUrl(m_endpoints.apiBaseUrl, QStringLiteral("/login"), QString()), body);
}

LoginResult ServerApi::login(const QString& url, const QJsonObject& body)
{
    {
        const QMutexLocker locker(&m_accountMutex);
        m_hasAccountInfo = false;
        ++m_loginGeneration;
    }
    const QByteArray reply = request(url, false, body, false, true);
    LoginResult result;
    QJsonDocument document;
    if (!ReplyParser::tryParseJson(reply, document, result))
        return result;
    ReplyParser::readLogin(document, result);
    if (result.status == RequestResult::Ok)
        setToken(result.token);
    return result;
}

AccountInfoGettingResult ServerApi::receiveAccountInfo()
{
    quint64 generation = 0;
    {
        const QMutexLocker locker(&m_accountMutex);
        if (m_hasAccountInfo && m_accountInfo.hasVPNData())
            return m_accountInfo;
        generation = m_loginGeneration;
    }
    qDebug() << "get user data from /user?appp,subscription,vpn";
    const QByteArray reply = request(serviceUrl(m_endpoints.apiBaseUrl, QStringLiteral("/user"),
                                                QStringLiteral("appp,subscription,vpn")),
                                     true, {}, true, true);
    AccountInfoGettingResult result;
    QJsonDocument document;
    if (!ReplyParser::tryParseJson(reply, document, result))
        return result;
    ReplyParser::readAccountInfo(document, result);

    const QMutexLocker locker(&m_accountMutex);
    if (generation == m_loginGeneration) {
        m_accountInfo = result;
        m_hasAccountInfo = true;
    }
    return result;
}

// --- server lists -------------------------------------------------------------------------------

ServerListGettingResult ServerApi::receiveServerList()
{
    return receiveList(fullListCache(),
                       serviceUrl(m_endpoints.apiBaseUrl, QStringLiteral("/hotspots"),
                                  QStringLiteral("country,config")),
                       true);
}

ServerListGettingResult ServerApi::receiveRecommendedServerList(const QString& ip)
{
    return receiveList(
        recommendedListCache(),
        serviceUrl(m_endpoints.apiBaseUrl,
                   QStringLiteral("/hotspots/recommended?ip=%1").arg(asUrlComponent(ip)),
                   QString()),
        false);
}

ServerListGettingResult ServerApi::receiveList(ListCache& cache, const QString& url,
                                               bool isFullList)
{
    const QMutexLocker locker(&cache.mutex);
    // Re-entered on this thread while its own exchange of this list waits: serve what is cached
    // rather than a second exchange; with nothing cached, fetch (the lock is ours already).
    if (cache.inFlight && cache.hasServers())
        return cache.result;
    if (cache.filled && (m_clock() - cache.storedAtMs) / 1000 <= listCacheSeconds)
        return cache.result;

    const ScopedValue<bool, bool> inFlight(cache.inFlight, true);
    const QByteArray reply = request(url, true, {}, true, true);
    if (isFullList)
        qDebug() << "HOTSPOTS RESPONSE";

    ServerListGettingResult result;
    QJsonDocument document;
    if (!ReplyParser::tryParseJson(reply, document, result))
        return cache.hasServers() ? cache.result : result;
    qDebug().noquote() << (isFullList ? "HOTSPOTS JSON" : "RECOM HOTSPOTS JSON")
                       << QString::fromUtf8(document.toJson(QJsonDocument::Compact));

    const AccountInfoGettingResult account = receiveAccountInfo();
    ReplyParser::parseServersListJson(document, account, result);
    if (account.status == RequestResult::Ok) {
        cache.result = result;
        cache.storedAtMs = m_clock();
        cache.filled = true;
    }
    return result;
}

// --- IP, version, flags, probe ------------------------------------------------------------------

IpGettingResult ServerApi::receiveIp()
{
    return ReplyParser::processReceiveIpDataNewVersion(
        request(m_endpoints.ipInfoUrl, true, {}, true, true));
}

LastVersionGettingResult ServerApi::receiveLastVersion()
{
    const QByteArray reply = request(
        serviceUrl(m_endpoints.apiBaseUrl, QStringLiteral("/versions/windows/ru"), QString()), true,
        {}, false, true);
    LastVersionGettingResult result = ReplyParser::parseLastVersion(reply);
    if (result.status == RequestResult::NotSet)
        qCritical() << "No update for current device";
    return result;
}

QByteArray ServerApi::receiveFlagPicture(const QString& countryCode, FlagPictureSize size)
{
    const QString url = serviceUrl(m_endpoints.apiBaseUrl,
                                   QStringLiteral("/flags/%1/%2.png")
                                       .arg(flagPictureSizeText(size), asUrlComponent(countryCode)),
                                   QString());
    FlagCache& cache = flagCache();
    {
        const QReadLocker reader(&cache.lock);
        const auto found = cache.pictures.constFind(url);
        if (found != cache.pictures.constEnd())
            return *found;
    }
    const QByteArray reply = request(url, true, {}, false, true);
    const QByteArray picture = isPng(reply) ? reply : QByteArray(); // an error body is no picture
    const QWriteLocker writer(&cache.lock);
    // Threads that missed the same picture at once each downloaded it; the first answer stays.
    const auto found = cache.pictures.constFind(url);
    if (found != cache.pictures.constEnd())
        return *found;
    cache.pictures.insert(url, picture);
    return picture;
}

bool ServerApi::isThereInternet()
{
    // A connection of its own: the probe asks whether a new connection gets out now, which a
    // kept-alive one over a path that has gone away would answer only at the limit.
    QNetworkAccessManager manager;
    QNetworkRequest request(QUrl(m_endpoints.probeUrl));
    ServiceTrust::apply(request);
    QNetworkReply* reply = manager.get(request);
    waitForReply(reply);
    return reply->bytesAvailable() > 0;
}

// --- process-wide state -------------------------------------------------------------------------

bool ServerApi::isKillswitchAllowed()
{
    return killswitchAllowed;
}

void ServerApi::setIsKillswitchAllowed(bool allowed)
{
    killswitchAllowed = allowed;
}

bool ServerApi::isOpenVpnAllowed()
{
    return openVpnAllowed;
}

void ServerApi::setIsOpenVpnAllowed(bool allowed)
{
    openVpnAllowed = allowed;
}

bool ServerApi::isIKEv2Allowed()
{
    return ikev2Allowed;
}

void ServerApi::setIsIKEv2Allowed(bool allowed)
{
    ikev2Allowed = allowed;
}

void ServerApi::routesChanged(bool unsettled)
{
    routesUnsettled = unsettled;
    ++routeGeneration;
}

void ServerApi::resetSharedCaches()
{
    for (ListCache* cache : {&fullListCache(), &recommendedListCache()}) {
        const QMutexLocker locker(&cache->mutex);
        cache->filled = false;
        cache->result = {};
        cache->storedAtMs = 0;
    }
    FlagCache& flags = flagCache();
    const QWriteLocker locker(&flags.lock);
    flags.pictures.clear();
}

} // namespace tavero
