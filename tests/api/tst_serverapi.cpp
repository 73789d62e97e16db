// ServerApi against the development service over real HTTPS on 127.0.0.1.

#include "api/serverapi.h"
#include "support/devservice.h"
#include "support/messagecapture.h"
#include "support/testmain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>
#include <QtConcurrent>
#include <atomic>

using tavero::ServerApi;
using tavero::test::DevService;
using tavero::test::MessageCapture;
using namespace std::chrono_literals;

namespace {

constexpr qint64 startOfTime = 1'000'000'000;

int serverCount(const ServerListGettingResult& list)
{
    int count = 0;
    for (const auto& servers : list.serversByCountry)
        count += servers.size();
    return count;
}

const VpnServerInformation* findServer(const ServerListGettingResult& list, const QString& name)
{
    for (const auto& servers : list.serversByCountry) {
        for (const VpnServerInformation& server : servers) {
            if (server.name == name)
                return &server;
        }
    }
    return nullptr;
}

} // namespace

class TestServerApi : public QObject {
    Q_OBJECT

    std::unique_ptr<DevService> m_service;
    std::unique_ptr<MessageCapture> m_messages;
    std::atomic<qint64> m_now{startOfTime};

    std::unique_ptr<ServerApi> makeApi(std::chrono::milliseconds limit = 30000ms)
    {
        return std::make_unique<ServerApi>(m_service->endpoints(), limit,
                                           [this] { return m_now.load(); });
    }

    bool logIn(ServerApi& api, int account = 0)
    {
        const LoginResult result = api.loginByEmail(m_service->account(account).email,
                                                    m_service->account(account).password);
        return result.status == RequestResult::Ok && !result.token.isEmpty();
    }

    void advanceSeconds(qint64 seconds) { m_now += seconds * 1000; }

    // The requests the service saw for `path`, oldest first.
    QList<QJsonObject> requestsTo(const QString& path)
    {
        QList<QJsonObject> found;
        for (const QJsonValue& entry : m_service->requests()) {
            if (entry.toObject().value("path").toString() == path)
                found << entry.toObject();
        }
        return found;
    }

private slots:
    void initTestCase()
    {
        // Idle connections stay open long enough for a test to see them reused.
        m_service = std::make_unique<DevService>(QStringList{"--keep-alive", "5"});
        QVERIFY2(m_service->isRunning(), qPrintable(m_service->errorText()));
        QCOMPARE(m_service->accounts().size(), 2);
    }

    void init()
    {
        ServerApi::resetSharedCaches();
        QVERIFY(m_service->reset());
        m_now = startOfTime;
        m_messages = std::make_unique<MessageCapture>();
    }

    void cleanup() { m_messages.reset(); }

    void cleanupTestCase()
    {
        QVERIFY2(m_service->stop(), "the service must end cleanly on SIGTERM");
    }

    // --- request pipeline and login ---------------------------------------------------------

    void brokenLoginReplies_data()
    {
        QTest::addColumn<int>("failure");
        QTest::addColumn<int>("httpStatus");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("outcome"); // status "message" token
        const auto row = [](const char* name, DevService::Failure failure, int httpStatus,
                            const QByteArray& body, const QString& outcome) {
            QTest::newRow(name) << int(failure) << httpStatus << body << outcome;
        };
        using F = DevService::Failure;
        row("empty body", F::Empty, 0, {}, "2 \"No Internet\" kept");
        // The toolkit resends a request whose connection closed before the reply began, so every
        // attempt meets a closing connection.
        row("connection closed", F::Close, 0, {}, "2 \"No Internet\" kept");
        row("not json", F::Garbage, 0, {},
            QString::fromLatin1("4 \"<html><body>502 Bad Gateway</body></html>\x01\xfe\" kept"));
        row("refused credentials", F::Body, 401,
            R"({"error": "invalid_credentials", "message": "invalid_user_credentials"})",
            "1 \"invalid_user_credentials\" kept");
        row("expired, but sent without the token: not renewed", F::Body, 401,
            R"({"error": "token_expired"})", "1 \"\" kept");
    }
    void brokenLoginReplies()
    {
        QFETCH(int, failure);
        QFETCH(int, httpStatus);
        QFETCH(QByteArray, body);
        QFETCH(QString, outcome);
        const bool closes = DevService::Failure(failure) == DevService::Failure::Close;
        QVERIFY(m_service->failNext("/login", closes ? 8 : 1, DevService::Failure(failure),
                                    httpStatus, body));
        auto api = makeApi();
        api->setToken("kept");
        const LoginResult result =
            api->loginByEmail(m_service->account(0).email, m_service->account(0).password);
        QCOMPARE(
            QStringLiteral("%1 \"%2\" %3").arg(result.status).arg(result.message, api->token()),
            outcome);
        if (!closes)
            QCOMPARE(m_service->requestCount("/login"), 1);
        QCOMPARE(m_service->requestCount("/refresh"), 0);
        for (const QJsonObject& login : requestsTo("/login")) // never with the token it replaces
            QVERIFY(login["authorization"].toString().isEmpty());
    }

    void replyLimitEndsASlowExchange()
    {
        QVERIFY(m_service->delayNext("/json", 1, 5000));
        auto api = makeApi(300ms);
        QElapsedTimer clock;
        clock.start();
        const IpGettingResult result = api->receiveIp();
        QCOMPARE(result.status, 2);
        QCOMPARE(result.message, QString("No Internet"));
        QVERIFY2(clock.elapsed() < 4000, "the wait ends at the limit, not with the reply");
    }

    void untrustedCertificateEndsAsNoInternet()
    {
        DevService stranger; // a fresh CA nobody trusts
        QVERIFY2(stranger.isRunning(), qPrintable(stranger.errorText()));
        tavero::Endpoints endpoints = stranger.endpoints();
        endpoints.caFile.clear();
        ServerApi api(endpoints);
        const LoginResult result =
            api.loginByEmail(stranger.account(0).email, stranger.account(0).password);
        QCOMPARE(result.status, 2);
        QVERIFY(m_messages->contains(QtDebugMsg, "SSL ERROR!"));
        QCOMPARE(stranger.requestCount("/login"), 0);
    }

    // --- token expiry -----------------------------------------------------------------------

    // Two account fetches with an expired token; the second shows what a later expired reply
    // does after the first renewal's outcome.
    void renewal_data()
    {
        QTest::addColumn<bool>("revoke");
        QTest::addColumn<int>("lifetime");
        QTest::addColumn<QByteArray>("refreshReply");
        QTest::addColumn<QVector<int>>("counts"); // status, "/user", "/refresh", log-outs
        const auto row = [](const char* name, bool revoke, int lifetime, const QByteArray& reply,
                            const QVector<int>& counts) {
            QTest::newRow(name) << revoke << lifetime << reply << counts;
        };
        row("renewed and repeated, then cached", false, 3600, {}, {0, 2, 1, 0});
        row("refused renewal logs out, and again for the next expired reply", true, 3600, {},
            {1, 2, 2, 2});
        row("renewal answering expired does not recurse", false, 3600,
            R"({"error": "token_expired", "message": "again"})", {1, 2, 2, 2});
        row("renewal with an empty token still renews", false, 3600, R"({"data": {"token": ""}})",
            {1, 3, 1, 0});
        row("renewed token expiring again is repeated once", false, 0, {}, {1, 4, 2, 2});
    }
    void renewal()
    {
        QFETCH(bool, revoke);
        QFETCH(int, lifetime);
        QFETCH(QByteArray, refreshReply);
        QFETCH(QVector<int>, counts);
        auto api = makeApi();
        QVERIFY(logIn(*api));
        const QString first = api->token();
        QSignalSpy logout(&api->logoutBroadcaster(), &LogoutBroadcaster::needLogout);
        QVERIFY(m_service->expireTokens(revoke));
        QVERIFY(m_service->setTokenLifetime(lifetime));
        if (!refreshReply.isEmpty())
            QVERIFY(m_service->replyNext("/refresh", 5, refreshReply.contains("error") ? 401 : 200,
                                         refreshReply));

        const AccountInfoGettingResult once = api->receiveAccountInfo();
        const AccountInfoGettingResult twice = api->receiveAccountInfo();
        QCOMPARE(twice.status, once.status);
        QCOMPARE((QVector<int>{once.status, m_service->requestCount("/user"),
                               m_service->requestCount("/refresh"), int(logout.count())}),
                 counts);
        const QList<QJsonObject> sent = requestsTo("/user");
        QCOMPARE(sent.first().value("authorization").toString(), "Bearer " + first);
        QCOMPARE(requestsTo("/refresh").first().value("authorization").toString(),
                 "Bearer " + first);
        if (once.status == 0)
            QCOMPARE(sent.at(1).value("authorization").toString(), "Bearer " + api->token());
    }

    // A second request while an exchange waits, from an event handler of the same thread (nested)
    // or from another thread. The list asked for during its own exchange: nested, the cached copy
    // comes at once, or with none it is fetched without deadlocking on its own lock; another
    // thread waits for the exchange and gets the fresh cache. Two renewals of one expired token
    // (the service rotates tokens, so the later refresh is refused) log nobody out: nested, the
    // list fetch inside the account fetch's refresh wait renews first; another thread waits for
    // the running renewal, finds the token renewed meanwhile and only repeats.
    void requestDuringAnExchange_data()
    {
        QTest::addColumn<bool>("renewal");
        QTest::addColumn<bool>("nested");
        QTest::addColumn<bool>("cached");
        QTest::addColumn<int>("exchanges"); // of /refresh for a renewal, of /hotspots otherwise
        QTest::newRow("list, nested, stale cache") << false << true << true << 2;
        QTest::newRow("list, nested, no cache") << false << true << false << 2;
        QTest::newRow("list, other thread") << false << false << false << 1;
        QTest::newRow("renewal, nested") << true << true << false << 2;
        QTest::newRow("renewal, other thread") << true << false << false << 1;
    }
    void requestDuringAnExchange()
    {
        QFETCH(bool, renewal);
        QFETCH(bool, nested);
        QFETCH(bool, cached);
        QFETCH(int, exchanges);
        auto api = makeApi();
        QVERIFY(logIn(*api));
        if (cached)
            QCOMPARE(api->receiveServerList().status, 0);
        advanceSeconds(600);
        QSignalSpy logout(&api->logoutBroadcaster(), &LogoutBroadcaster::needLogout);
        const QString path = renewal ? "/refresh" : "/hotspots";
        QVERIFY(!renewal || m_service->expireTokens());
        QVERIFY(m_service->delayNext(path, 1, 2000)); // the first exchange is answered late
        ServerListGettingResult second;
        QFuture<void> other;
        QTimer poll; // starts the second request once the first exchange is on its way
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (!m_messages->contains(QtDebugMsg, "reequest " + m_service->apiUrl() + path))
                return;
            poll.stop();
            if (nested)
                second = api->receiveServerList();
            else
                other = QtConcurrent::run([&] { second = api->receiveServerList(); });
        });
        poll.start(5);
        const int first =
            renewal ? api->receiveAccountInfo().status : api->receiveServerList().status;
        other.waitForFinished();
        QCOMPARE(first, 0);
        QCOMPARE(second.status, 0);
        QCOMPARE(serverCount(second), 96);
        QCOMPARE(m_service->requestCount(path), exchanges);
        QCOMPARE(logout.count(), 0);
    }

    // The account cache serves only a record with VPN data, and every login (a failed one too)
    // clears it.
    void accountIsReadAndCachedWhileItHoldsVpnData()
    {
        auto api = makeApi();
        QVERIFY(logIn(*api, 1));
        const AccountInfoGettingResult account = api->receiveAccountInfo();
        const DevService::Account seeded = m_service->account(1);
        QCOMPARE(
            QStringList(
                {account.email, account.vpnUsername, account.vpnPassword, account.sharedKey}),
            QStringList({seeded.email, seeded.vpnUsername, seeded.vpnPassword, seeded.sharedKey}));
        QVERIFY(account.hasVPNData());
        QCOMPARE(api->receiveAccountInfo().privateKey, account.privateKey);
        QCOMPARE(requestsTo("/user").first().value("target").toString(),
                 QString("/user?scope=appp,subscription,vpn"));

        QVERIFY(logIn(*api)); // a new login forgets the cached record
        QVERIFY(m_service->failNext("/user", 1, DevService::Failure::Garbage));
        QCOMPARE(api->receiveAccountInfo().status, 4);
        QVERIFY(m_service->replyNext(
            "/user", 1, 200,
            R"({"data": {"email": "e", "vpn": {"data": {"ca": "", "pbk": "p", "prk": "k"}}}})"));
        QCOMPARE(api->receiveAccountInfo().status, 0); // cached, but without VPN data
        QCOMPARE(api->receiveAccountInfo().email, m_service->account(0).email);
        QVERIFY(api->receiveAccountInfo().hasVPNData());
        QCOMPARE(m_service->requestCount("/user"), 4);

        QCOMPARE(api->loginByEmail(m_service->account(0).email, "wrong").status, 1);
        QVERIFY(api->receiveAccountInfo().hasVPNData()); // asked again; the old token still works
        QCOMPARE(m_service->requestCount("/user"), 5);
    }

    // --- server lists -----------------------------------------------------------------------

    void serverListsAreReadAndCachedFor299Seconds()
    {
        auto api = makeApi();
        QVERIFY(logIn(*api));
        const ServerListGettingResult list = api->receiveServerList();
        QCOMPARE(list.status, 0);
        QCOMPARE(list.countriesByCode.size(), 36);
        QCOMPARE(serverCount(list), 96);
        // Field by field reading is tst_serviceinput's; here the seed and the account arrive.
        const VpnServerInformation* germany = findServer(list, "de-1");
        QVERIFY(germany && germany->host == "de-1.vpn.tavero.example");
        QCOMPARE(germany->sharedKey, m_service->account(0).sharedKey);
        QCOMPARE(requestsTo("/hotspots").first().value("target").toString(),
                 QString("/hotspots?scope=country,config"));

        // A hostile address stays inside its query value; the cache ignores the address.
        const ServerListGettingResult recommended =
            api->receiveRecommendedServerList("1.2.3.4&scope=x#frag");
        QCOMPARE(serverCount(recommended), 14);
        QCOMPARE(serverCount(api->receiveRecommendedServerList("198.51.100.9")), 14);
        const QList<QJsonObject> asked = requestsTo("/hotspots/recommended");
        QCOMPARE(asked.size(), 1);
        const QString target = asked.first().value("target").toString();
        QVERIFY2(target.startsWith("/hotspots/recommended?ip=1.2.3.4%26scope%3Dx") &&
                     !target.contains('#') && !target.contains("&scope"),
                 qPrintable(target));

        m_now += 299'999; // still 299 whole seconds, and for another client of the process too
        QCOMPARE(serverCount(makeApi()->receiveServerList()), 96);
        QCOMPARE(m_service->requestCount("/hotspots"), 1);
        m_now += 1;
        QCOMPARE(api->receiveServerList().status, 0);
        api->receiveRecommendedServerList("203.0.113.5");
        QCOMPARE(m_service->requestCount("/hotspots"), 2);
        QCOMPARE(m_service->requestCount("/hotspots/recommended"), 2);
    }

    void staleListIsServedWhileTheServiceFails_data()
    {
        QTest::addColumn<int>("failure");
        QTest::newRow("empty") << int(DevService::Failure::Empty);
        QTest::newRow("closed") << int(DevService::Failure::Close);
        QTest::newRow("garbage") << int(DevService::Failure::Garbage);
    }
    void staleListIsServedWhileTheServiceFails()
    {
        QFETCH(int, failure);
        // A closed connection is retried by the toolkit: every attempt has to meet one.
        const bool closes = DevService::Failure(failure) == DevService::Failure::Close;
        auto api = makeApi();
        QVERIFY(logIn(*api));
        const ServerListGettingResult fresh = api->receiveServerList();
        QCOMPARE(fresh.status, 0);
        advanceSeconds(3600);
        QVERIFY(m_service->failNext("/hotspots", closes ? 8 : 1, DevService::Failure(failure)));
        const ServerListGettingResult stale = api->receiveServerList();
        QCOMPARE(stale.status, 0);
        QCOMPARE(stale.countriesById.keys(), fresh.countriesById.keys());
        QVERIFY(m_service->requestCount("/hotspots") == 2 || closes);

        ServerApi::resetSharedCaches(); // nothing to fall back on
        QVERIFY(m_service->failNext("/hotspots", closes ? 8 : 1, DevService::Failure(failure)));
        const ServerListGettingResult failed = api->receiveServerList();
        QCOMPARE(failed.status,
                 DevService::Failure(failure) == DevService::Failure::Garbage ? 4 : 2);
        QVERIFY(failed.serversByCountry.isEmpty());
    }

    void listOfAFailedAccountIsNeitherCachedNorGivenCredentials()
    {
        auto api = makeApi();
        QVERIFY(logIn(*api));
        QVERIFY(m_service->failNext("/user", 1, DevService::Failure::Status, 500));
        const ServerListGettingResult list = api->receiveServerList();
        QCOMPARE(list.status, 0);
        const VpnServerInformation* server = findServer(list, "nl-1");
        QVERIFY(server);
        QVERIFY(!server->hasAccountData);
        QVERIFY(server->vpnUsername.isEmpty());

        QVERIFY(findServer(api->receiveServerList(), "nl-1")->hasAccountData);
        QCOMPARE(m_service->requestCount("/hotspots"), 2);
    }

    // --- IP, version, flags, probe ----------------------------------------------------------

    // The newest version is asked for without a token (the update dialog's test downloads it).
    void versionCheck()
    {
        auto api = makeApi();
        QCOMPARE(api->receiveLastVersion().versionInt, 13002);
        QVERIFY(
            requestsTo("/versions/windows/ru").first().value("authorization").toString().isEmpty());
        QVERIFY(m_service->replyNext("/versions/windows/ru", 1, 200, R"({"data": []})"));
        QCOMPARE(api->receiveLastVersion().status, 5);
        QCOMPARE(m_messages->count(QtCriticalMsg, "No update for current device"), 1);
    }

    void flagPicturesAreCachedForTheProcess()
    {
        auto api = makeApi();
        const QByteArray small = api->receiveFlagPicture("de", FlagPictureSize::Small);
        QCOMPARE(QImage::fromData(small).size(), QSize(60, 45));
        QCOMPARE(makeApi()->receiveFlagPicture("de", FlagPictureSize::Small), small);
        QCOMPARE(m_service->requestCount("/flags/60x45/de.png"), 1);

        const QByteArray large = api->receiveFlagPicture("de", FlagPictureSize::Large);
        QCOMPARE(QImage::fromData(large).size(), QSize(640, 480));

        // A missing picture (the service's JSON 404) is kept as an empty answer.
        QCOMPARE(api->receiveFlagPicture("xx", FlagPictureSize::Small), QByteArray());
        QCOMPARE(api->receiveFlagPicture("xx", FlagPictureSize::Small), QByteArray());
        QCOMPARE(m_service->requestCount("/flags/60x45/xx.png"), 1);

        QCOMPARE(api->receiveFlagPicture("../de", FlagPictureSize::Small), QByteArray());
        QCOMPARE(m_service->requestCount("/flags/60x45/de.png"), 1);
    }

    // The GUI thread downloading a flag must not hold up another thread's flag (the server page
    // joins its row builders inside such a wait), nor itself when it re-enters.
    void flagDownloadDoesNotBlockOtherThreads()
    {
        auto api = makeApi();
        QVERIFY(m_service->delayNext("/flags/640x480/de.png", 1, 2000));
        bool otherFinished = false;
        QByteArray other;
        QByteArray nestedSame;
        const std::unique_ptr<QThread> thread(QThread::create(
            [&] { other = api->receiveFlagPicture("nl", FlagPictureSize::Small); }));
        QTimer::singleShot(0, [&] {
            thread->start();
            otherFinished = thread->wait(QDeadlineTimer(20000)); // blocks this thread, as a join
            nestedSame = api->receiveFlagPicture("de", FlagPictureSize::Large);
        });
        const QByteArray outer = api->receiveFlagPicture("de", FlagPictureSize::Large);
        thread->wait();
        QVERIFY2(otherFinished, "the other thread waited for this thread's download");
        QCOMPARE(QImage::fromData(other).size(), QSize(60, 45));
        QCOMPARE(QImage::fromData(outer).size(), QSize(640, 480));
        QCOMPARE(nestedSame, outer);
        QCOMPARE(api->receiveFlagPicture("de", FlagPictureSize::Large), outer);
    }

    // Exchanges of one thread share a kept-alive connection until the routes change; while a
    // tunnel is being brought up, each opens its own, so none can carry the IP check around it.
    void ipCheckKeepsItsConnectionUntilTheRoutesChange()
    {
        auto api = makeApi();
        QVERIFY(logIn(*api));
        for (const bool unsettled : {false, true, false}) {
            ServerApi::routesChanged(unsettled);
            for (int i = 0; i < 2; ++i) {
                const IpGettingResult ip = api->receiveIp();
                QCOMPARE(QStringList({QString::number(ip.status), ip.ip, ip.countryCode,
                                      ip.isProtected ? "protected" : "open"}),
                         QStringList({"0", "127.0.0.1", "de", "open"}));
            }
        }
        QCOMPARE(requestsTo("/json").first().value("authorization").toString(),
                 "Bearer " + api->token()); // the token goes to the IP service too
        QList<int> ports;                   // one client port, one connection
        for (const QJsonObject& request : requestsTo("/json"))
            ports << request.value("client_port").toInt();
        QCOMPARE(ports.size(), 6);
        QCOMPARE(ports[1], ports[0]);
        QCOMPARE(QSet<int>(ports.begin() + 1, ports.end()).size(), 4);
        QCOMPARE(ports[5], ports[4]);
        QVERIFY(!ports.mid(0, 4).contains(ports[4]));
    }

    void reachabilityProbe()
    {
        auto api = makeApi();
        QVERIFY(api->isThereInternet());
        QCOMPARE(m_service->requestCount("probe:/"), 1);
        QVERIFY(m_service->failNext("probe:/", 1, DevService::Failure::Empty));
        QVERIFY(!api->isThereInternet());
        QVERIFY(api->isThereInternet());
        // A closed connection is retried by the toolkit: every attempt has to meet one.
        QVERIFY(m_service->failNext("probe:/", 8, DevService::Failure::Close));
        QVERIFY(!api->isThereInternet());
    }
};

TAVERO_TEST_GUILESS_MAIN(TestServerApi)
#include "tst_serverapi.moc"
