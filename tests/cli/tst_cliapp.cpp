#include "app/settings.h"
#include "cli/cliapp.h"
#include "cli/clioutput.h"
#include "cli/exitcode.h"
#include "manager/vpnmanager.h"
#include "support/managerfixture.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QTimer>
#include <QTranslator>
#include <csignal>
#include <memory>

using namespace tavero::cli;
using tavero::ConnectionChain;
using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;

namespace {

ServerListGettingResult fullList()
{
    return ServerListMaker()
        .country(13, QStringLiteral("DE"), QStringLiteral("Germany"))
        .country(15, QStringLiteral("FR"), QStringLiteral("France"))
        .country(20, QStringLiteral("NL"), QStringLiteral("Netherlands"))
        .server(13, QStringLiteral("de-1"), 40)
        .server(13, QStringLiteral("de-2"), 7)
        .server(15, QStringLiteral("fr-1"), 0)
        .server(20, QStringLiteral("nl-1"), 3, false)
        .list();
}

ServerListGettingResult recommendedList()
{
    return ServerListMaker()
        .country(15, QStringLiteral("FR"), QStringLiteral("France"))
        .server(15, QStringLiteral("fr-1"), 0, true, true)
        .list();
}

} // namespace

// tavero-cli's commands over a scripted service client and platform, read back from their JSON
// output (and once from their text output).
class TestCliApp : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void statusExitCodes_data();
    void statusExitCodes();
    void serversNeedStoredLogin();
    void serversListRecommendedFirst();
    void loginOutcomes_data();
    void loginOutcomes();
    void loginWithoutPasswordAsksNothingOfTheService();
    void connectToUnknownOrEmptyCountry_data();
    void connectToUnknownOrEmptyCountry();
    void connectFailureEndsAtOnce();
    void connectHoldsTunnelUntilStopped();
    void stopDuringAttemptDisconnectsAfterIt();
    void connectReportsReestablishing();
    void secondCommandWhileLockHeldIsBusy();

private:
    // Runs one command; the manager comes from the fixture. `whileRunning` may act on the app.
    int run(const QStringList& arguments, const QString& password = QStringLiteral("secret"),
            const std::function<void(CliApp&)>& beforeRun = {});
    QVector<QJsonObject> jsonLines() const;
    QJsonObject lastJson() const;
    QStringList events() const;
    void storeToken() { m_fixture->manager().settings().setToken(QStringLiteral("token-1")); }

    QTranslator m_english;
    std::unique_ptr<ManagerFixture> m_fixture;
    QByteArray m_out;
    QByteArray m_err;
    QBuffer m_outBuffer{&m_out};
    QBuffer m_errBuffer{&m_err};
    std::unique_ptr<CliOutput> m_output;
    // Kept after run() so the manager it took over (and its platform) can be inspected.
    std::unique_ptr<CliApp> m_app;
    int m_passwordReads = 0;
};

void TestCliApp::initTestCase()
{
    QVERIFY(m_english.load(QStringLiteral(":/translations/eng")));
    QCoreApplication::installTranslator(&m_english);
}

void TestCliApp::init()
{
    m_app.reset();
    m_fixture = std::make_unique<ManagerFixture>();
    m_fixture->answerReachable(fullList(), recommendedList());
    m_outBuffer.close();
    m_errBuffer.close();
    m_out.clear();
    m_err.clear();
    m_passwordReads = 0;
}

void TestCliApp::cleanup()
{
    m_app.reset();
    m_fixture.reset();
}

int TestCliApp::run(const QStringList& arguments, const QString& password,
                    const std::function<void(CliApp&)>& beforeRun)
{
    CliOptions options;
    QString error;
    if (!CliOptions::parse(arguments, options, error)) {
        qWarning("bad test arguments: %s", qPrintable(error));
        return -1;
    }
    m_app.reset();
    if (!m_outBuffer.isOpen())
        m_outBuffer.open(QIODevice::WriteOnly | QIODevice::Append);
    if (!m_errBuffer.isOpen())
        m_errBuffer.open(QIODevice::WriteOnly | QIODevice::Append);
    m_output = std::make_unique<CliOutput>(options.json, m_outBuffer, m_errBuffer);
    m_app = std::make_unique<CliApp>(
        options, *m_output, m_fixture->api(), [this] { return m_fixture->releaseManager(); },
        [this, password](QString& read) {
            ++m_passwordReads;
            read = password;
            return !password.isNull();
        });
    if (beforeRun)
        beforeRun(*m_app);
    // A connect that never ends fails its test instead of hanging it.
    QTimer watchdog;
    watchdog.setSingleShot(true);
    QObject::connect(&watchdog, &QTimer::timeout, [this] {
        qWarning("watchdog: stopping a connect that did not end");
        m_app->requestStop(SIGALRM);
    });
    watchdog.start(60000);
    return m_app->run();
}

QVector<QJsonObject> TestCliApp::jsonLines() const
{
    QVector<QJsonObject> lines;
    for (const QByteArray& line : m_out.split('\n')) {
        if (line.isEmpty())
            continue;
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(line, &error);
        if (error.error != QJsonParseError::NoError || !document.isObject()) {
            qWarning("not one JSON object per line: %s", line.constData());
            return {};
        }
        lines << document.object();
    }
    return lines;
}

QJsonObject TestCliApp::lastJson() const
{
    const QVector<QJsonObject> lines = jsonLines();
    return lines.isEmpty() ? QJsonObject() : lines.last();
}

QStringList TestCliApp::events() const
{
    QStringList names;
    for (const QJsonObject& line : jsonLines()) {
        const QString event = line.value(QStringLiteral("event")).toString();
        if (event == QLatin1String("mode"))
            names << line.value(QStringLiteral("mode")).toString();
        else if (!event.isEmpty())
            names << event;
        if (!event.isEmpty()) {
            // Every event carries a UTC time stamp with milliseconds.
            const QString time = line.value(QStringLiteral("time")).toString();
            if (!QDateTime::fromString(time, Qt::ISODateWithMs).isValid() || !time.endsWith('Z'))
                names << QStringLiteral("bad time ") + time;
        }
    }
    return names;
}

void TestCliApp::statusExitCodes_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("isProtected");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("protected") << int(RequestResult::Ok) << true << int(Success);
    QTest::newRow("not protected") << int(RequestResult::Ok) << false << int(NotProtected);
    QTest::newRow("no answer") << int(RequestResult::NoInternet) << true << int(NoConnection);
}

void TestCliApp::statusExitCodes()
{
    QFETCH(int, status);
    QFETCH(bool, isProtected);
    QFETCH(int, exitCode);
    tavero::Settings settings;
    settings.setEmail(QStringLiteral("user@vpn.test"));
    settings.setServerName(QStringLiteral("de-2"));
    m_fixture->api().ipResult.status = status;
    m_fixture->api().ipResult.isProtected = isProtected;

    QCOMPARE(run({"--json", "status"}), exitCode);
    const QJsonObject json = lastJson();
    QCOMPARE(json.value("email").toString(), QStringLiteral("user@vpn.test"));
    QCOMPARE(json.value("server").toString(), QStringLiteral("de-2"));
    QCOMPARE(json.value("protected").toBool(), exitCode == Success);
    QCOMPARE(json.value("ok").toBool(), exitCode != NoConnection);
    if (exitCode == NoConnection) {
        QVERIFY(json.value("ip").isNull());
    } else {
        QCOMPARE(json.value("ip").toString(), QStringLiteral("203.0.113.7"));
    }
}

void TestCliApp::serversNeedStoredLogin()
{
    QCOMPARE(run({"--json", "servers"}), int(NotLoggedIn));
    QCOMPARE(lastJson().value("ok").toBool(true), false);
    QCOMPARE(m_fixture->exchanges(), 0);

    // A stored token the service no longer takes.
    init();
    storeToken();
    m_fixture->api().serverList = ServerListMaker().list(RequestResult::ServerError);
    QCOMPARE(run({"--json", "servers"}), int(NotLoggedIn));

    // No network at all.
    init();
    storeToken();
    m_fixture->api().ipResult.status = RequestResult::NoInternet;
    m_fixture->api().internet = false;
    QCOMPARE(run({"--json", "servers"}), int(NoConnection));
}

void TestCliApp::serversListRecommendedFirst()
{
    storeToken();
    QCOMPARE(run({"--json", "servers"}), int(Success));
    const QJsonObject json = lastJson();
    QCOMPARE(json.value("ok").toBool(), true);
    // The stored log-in was used, not a new one.
    QCOMPARE(m_fixture->api().calls(QStringLiteral("loginByEmail")), 0);
    QCOMPARE(json.value("current").toString(), QStringLiteral("fr-1"));

    const QJsonArray recommended = json.value("recommended").toArray();
    QCOMPARE(recommended.size(), 1);
    QCOMPARE(recommended[0].toObject().value("code").toString(), QStringLiteral("FR"));

    const QJsonArray all = json.value("all").toArray();
    QCOMPARE(all.size(), 3);
    const QJsonObject germany = all[1].toObject();
    const QJsonObject netherlands = all[2].toObject();
    QCOMPARE(germany.value("bestServer").toString(), QStringLiteral("de-2"));
    QCOMPARE(germany.value("load").toInt(), 7);
    QVERIFY(netherlands.value("bestServer").isNull());
    QVERIFY(netherlands.value("load").isNull());
    // No flags for a terminal.
    QCOMPARE(m_fixture->api().flagCalls(), 0);
}

void TestCliApp::loginOutcomes_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("serverMessage");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("error");

    QTest::newRow("accepted") << int(RequestResult::Ok) << QString() << int(Success) << QString();
    QTest::newRow("wrong password")
        << int(RequestResult::ServerError) << QStringLiteral("invalid_user_credentials")
        << int(LoginRefused) << QStringLiteral("Wrong login or password.");
    QTest::newRow("no reply") << int(RequestResult::NoInternet) << QString() << int(NoConnection)
                              << QStringLiteral("Connection failed. Check network connection.");
}

void TestCliApp::loginOutcomes()
{
    QFETCH(int, status);
    QFETCH(QString, serverMessage);
    QFETCH(int, exitCode);
    QFETCH(QString, error);
    m_fixture->api().loginResult.status = status;
    m_fixture->api().loginResult.message = serverMessage;

    QCOMPARE(run({"--json", "login", "user@vpn.test"}, QStringLiteral("pass word")), exitCode);
    QCOMPARE(m_fixture->api().lastEmail, QStringLiteral("user@vpn.test"));
    QCOMPARE(m_fixture->api().lastPassword, QStringLiteral("pass word"));
    const QJsonObject json = lastJson();
    tavero::Settings stored;
    if (exitCode == Success) {
        QCOMPARE(json.value("server").toString(), QStringLiteral("fr-1"));
        QCOMPARE(stored.token(), QStringLiteral("token-1"));
    } else {
        QCOMPARE(json.value("error").toString(), error);
        QCOMPARE(json.value("exitCode").toInt(), exitCode);
        QVERIFY(stored.token().isEmpty());
    }
    // The password never reaches the output.
    QVERIFY(!m_out.contains("pass word"));
    QVERIFY(!m_err.contains("pass word"));
}

void TestCliApp::loginWithoutPasswordAsksNothingOfTheService()
{
    QCOMPARE(run({"login", "user@vpn.test"}, QString()), int(UsageError));
    QCOMPARE(m_passwordReads, 1);
    QCOMPARE(m_fixture->api().calls(QStringLiteral("loginByEmail")), 0);
    QVERIFY(m_err.startsWith("tavero-cli: no password"));
}

void TestCliApp::connectToUnknownOrEmptyCountry_data()
{
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("error");
    QTest::newRow("unknown") << QStringLiteral("zz")
                             << QStringLiteral("no country with the code zz");
    QTest::newRow("nothing available")
        << QStringLiteral("nl")
        << QStringLiteral("No available servers in this country. Please select another one");
}

void TestCliApp::connectToUnknownOrEmptyCountry()
{
    QFETCH(QString, country);
    QFETCH(QString, error);
    storeToken();
    QCOMPARE(run({"--json", "connect", "--country", country}), int(NoServerInCountry));
    QCOMPARE(lastJson().value("error").toString(), error);
    QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 0);
}

void TestCliApp::connectFailureEndsAtOnce()
{
    storeToken();
    m_fixture->platform().queueResult(QStringLiteral("connectIKEv2"),
                                      OperationResult(QStringLiteral("dial refused")));
    QCOMPARE(run({"--json", "connect"}), int(ConnectFailed));
    QCOMPARE(events(), (QStringList{"Connecting", "Failed"}));
    QCOMPARE(lastJson().value("error").toString(),
             QStringLiteral("Failed to connect via any protocols"));
}

void TestCliApp::connectHoldsTunnelUntilStopped()
{
    storeToken();
    int accountFetches = -1;
    const int exitCode = run({"--json", "connect", "--country", "de"}, QString(), [&](CliApp& app) {
        // Once the tunnel is up, ask to stop from the event loop, as SIGINT would.
        ConnectionChain& chain = m_fixture->manager().connection();
        QObject::connect(&chain, &ConnectionChain::modeChanged, &chain, [&, &app = app] {
            if (chain.mode() == ConnectionChain::Connected) {
                accountFetches = m_fixture->api().calls(QStringLiteral("receiveAccountInfo"));
                QTimer::singleShot(0, &chain, [&app] { app.requestStop(SIGINT); });
            }
        });
    });
    QCOMPARE(exitCode, int(Success));
    QCOMPARE(events(), (QStringList{"Connecting", "Connected", "stopping", "Disconnected"}));
    const QVector<QJsonObject> lines = jsonLines();
    QCOMPARE(lines[1].value("server").toString(), QStringLiteral("de-2"));
    QCOMPARE(lines[1].value("protocol").toString(), QStringLiteral("IKEv2"));
    QCOMPARE(lines[2].value("signal").toString(), QStringLiteral("SIGINT"));
    // Fresh VPN credentials before the attempt (one at the log-in, one before connecting).
    QCOMPARE(accountFetches, 2);
    QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 1);
    QVERIFY(m_fixture->platform().callCount(QStringLiteral("disconnect")) >= 1);
    QCOMPARE(m_fixture->manager().connection().mode(), ConnectionChain::Disconnected);
}

void TestCliApp::stopDuringAttemptDisconnectsAfterIt()
{
    storeToken();
    m_fixture->platform().setConnectDelay(100);
    const int exitCode = run({"--json", "connect"}, QString(), [&](CliApp& app) {
        // SIGTERM arrives while the dial still runs: queued, it is delivered by the attempt's
        // nested loop, whatever the machine's speed.
        ConnectionChain& chain = m_fixture->manager().connection();
        QObject::connect(
            &chain, &ConnectionChain::modeChanged, &chain,
            [&chain, &app = app] {
                if (chain.mode() == ConnectionChain::Connecting)
                    app.requestStop(SIGTERM);
            },
            Qt::QueuedConnection);
    });
    QCOMPARE(exitCode, int(Success));
    QCOMPARE(events(), (QStringList{"Connecting", "stopping", "Connected", "Disconnected"}));
    QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 1);
    QCOMPARE(m_fixture->manager().connection().mode(), ConnectionChain::Disconnected);
}

void TestCliApp::connectReportsReestablishing()
{
    storeToken();
    bool broke = false;
    const int exitCode = run({"--json", "connect"}, QString(), [&](CliApp& app) {
        ConnectionChain& chain = m_fixture->manager().connection();
        QObject::connect(&chain, &ConnectionChain::modeChanged, &chain, [&, &app = app] {
            if (chain.mode() != ConnectionChain::Connected)
                return;
            if (!broke) {
                broke = true;
                // The keeper's verdict, a moment after the tunnel came up (not from inside the
                // attempt, which processes events): the service sees the real address.
                QTimer::singleShot(50, &chain, [&chain] {
                    chain.onBreakDetected(tavero::ConnectionKeeper::NotProtected);
                });
            } else {
                QTimer::singleShot(50, &chain, [&app] { app.requestStop(SIGINT); });
            }
        });
    });
    QCOMPARE(exitCode, int(Success));
    QCOMPARE(events(),
             (QStringList{"Connecting", "Connected", "Disconnected", "reestablishing", "Connecting",
                          "Connected", "reestablished", "stopping", "Disconnected"}));
    QCOMPARE(jsonLines()[6].value("success").toBool(), true);
    QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 2);
}

void TestCliApp::secondCommandWhileLockHeldIsBusy()
{
    QDir().mkpath(QFileInfo(CliApp::lockFilePath()).absolutePath());
    QLockFile other(CliApp::lockFilePath());
    QVERIFY(other.tryLock(0));
    storeToken();
    QCOMPARE(run({"--json", "servers"}), int(Busy));
    QCOMPARE(run({"--json", "connect"}), int(Busy));
    QCOMPARE(m_fixture->exchanges(), 0);
    // status and logout do not manage the tunnel and still work.
    QCOMPARE(run({"--json", "logout"}), int(Success));
    other.unlock();
}

TAVERO_TEST_GUILESS_MAIN(TestCliApp)
#include "tst_cliapp.moc"
