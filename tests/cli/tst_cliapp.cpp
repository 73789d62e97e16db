#include "app/settings.h"
#include "cli/cliapp.h"
#include "cli/clioutput.h"
#include "cli/commandlock.h"
#include "cli/exitcode.h"
#include "cli/passwordreader.h"
#include "manager/vpnmanager.h"
#include "support/managerfixture.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <QTranslator>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <pty.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

using namespace tavero::cli;
using tavero::ConnectionChain;
using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;

namespace {

enum Scenario { Refused, StopWhenConnected, StopDuringAttempt };

} // namespace

Q_DECLARE_METATYPE(Scenario)

// tavero-cli's commands over a scripted service client and platform, read back from their JSON
// output.
class TestCliApp : public QObject {
    Q_OBJECT
private slots:
    void cleanup()
    {
        m_app.reset();
        m_fixture.reset();
    }
    void initTestCase()
    {
        QVERIFY(m_english.load(QStringLiteral(":/translations/eng")));
        QCoreApplication::installTranslator(&m_english);
    }

    void init()
    {
        m_app.reset();
        m_fixture = std::make_unique<ManagerFixture>();
        m_fixture->answerReachable(
            ServerListMaker()
                .country(13, "DE", "Germany")
                .country(15, "FR", "France")
                .country(20, "NL", "Netherlands")
                .server(13, "de-1", 40)
                .server(13, "de-2", 7)
                .server(15, "fr-1", 0)
                .server(20, "nl-1", 3, false)
                .list(),
            ServerListMaker().country(15, "FR", "France").server(15, "fr-1", 0, true, true).list());
        m_outBuffer.close();
        m_errBuffer.close();
        m_out.clear();
        m_err.clear();
        m_passwordReads = 0;
    }

    // Command lines: rows with an error part are refused; a refused command line never repeats a
    // password.
    void parse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("command");
        QTest::addColumn<QString>("country");
        QTest::addColumn<QString>("errorPart");
        const auto row = [](const char* name, const QStringList& arguments,
                            CliOptions::Command command, const QString& country = {},
                            const QString& errorPart = {}) {
            QTest::newRow(name) << arguments << int(command) << country << errorPart;
        };
        const auto refused = [&](const char* name, const QStringList& arguments,
                                 const char* error) {
            row(name, arguments, CliOptions::Command::Help, {}, error);
        };
        row("json after", {"status", "--json"}, CliOptions::Command::Status);
        row("country with =", {"--json", "connect", "--country=NL"}, CliOptions::Command::Connect,
            "NL");
        row("help wins", {"connect", "--help"}, CliOptions::Command::Help);
        refused("unknown command", {"dance"}, "unknown command");
        refused("country without code", {"connect", "--country"}, "country code");
        refused("extra argument", {"status", "now"}, "unexpected argument");
        refused("nothing", {}, "no command");
        refused("unknown option", {"status", "--fast"}, "unknown option");
        refused("login without e-mail", {"login"}, "e-mail");
        refused("password as argument", {"login", "a@b.test", "secret"},
                "never from the command line");
        refused("password option", {"login", "a@b.test", "--password=secret"},
                "never from the command line");
        refused("country followed by option", {"connect", "--country", "--json"}, "country code");
        refused("country for another command", {"servers", "--country", "de"},
                "belongs to connect");
    }

    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, errorPart);
        CliOptions options;
        QString error;
        QCOMPARE(CliOptions::parse(arguments, options, error), errorPart.isEmpty());
        QVERIFY2(error.contains(errorPart) && !error.contains("secret"), qPrintable(error));
        if (errorPart.isEmpty()) {
            QTEST(int(options.command), "command");
            QTEST(options.country, "country");
            QCOMPARE(options.json, arguments.contains("--json"));
        }
    }

    // Commands that stop before the tunnel: no stored log-in, a log-in the service no longer takes,
    // no network, an unknown or empty country.
    void refusals_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("token");
        QTest::addColumn<int>("listStatus");
        QTest::addColumn<bool>("internet");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("error");
        const QStringList servers{"--json", "servers"};
        const int ok = RequestResult::Ok;
        QTest::newRow("no log-in") << servers << false << ok << true << int(NotLoggedIn) << "";
        QTest::newRow("log-in refused")
            << servers << true << int(RequestResult::ServerError) << true << int(NotLoggedIn) << "";
        QTest::newRow("no network") << servers << true << ok << false << int(NoConnection)
                                    << "Connection failed. Check network connection.";
        QTest::newRow("service unreachable")
            << servers << true << int(RequestResult::NoInternet) << true << int(NoConnection)
            << "the service cannot be reached; try again later";
        QTest::newRow("status without network")
            << QStringList{"--json", "status"} << true << ok << false << int(NoConnection) << "";
        QTest::newRow("unknown country")
            << QStringList{"--json", "connect", "--country", "zz"} << true << ok << true
            << int(NoServerInCountry) << "no country with the code zz";
        QTest::newRow("nothing available")
            << QStringList{"--json", "connect", "--country", "nl"} << true << ok << true
            << int(NoServerInCountry)
            << "No available servers in this country. Please select another one";
    }

    void refusals()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, token);
        QFETCH(int, listStatus);
        QFETCH(bool, internet);
        QFETCH(int, exitCode);
        QFETCH(QString, error);
        if (token)
            storeToken();
        m_fixture->api().serverList.status = listStatus;
        if (!internet) {
            m_fixture->api().ipResult.status = RequestResult::NoInternet;
            m_fixture->api().internet = false;
        }
        QCOMPARE(run(arguments), exitCode);
        QCOMPARE(lastJson().value("ok").toBool(true), false);
        if (!error.isEmpty())
            QCOMPARE(lastJson().value("error").toString(), error);
        if (!token)
            QCOMPARE(m_fixture->exchanges(), 0);
        QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 0);
    }

    void loginOutcomes_data()
    {
        QTest::addColumn<QString>("password"); // null: none could be read
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("exitCode");
        const QString password = QStringLiteral("pass word");
        QTest::newRow("accepted") << password << int(RequestResult::Ok) << int(Success);
        QTest::newRow("refused") << password << int(RequestResult::ServerError)
                                 << int(LoginRefused);
        QTest::newRow("no reply") << password << int(RequestResult::NoInternet)
                                  << int(NoConnection);
        QTest::newRow("unreadable reply")
            << password << int(RequestResult::InvalidResponse) << int(Failure);
        QTest::newRow("no password") << QString() << int(RequestResult::Ok) << int(UsageError);
    }

    void loginOutcomes()
    {
        QFETCH(QString, password);
        QFETCH(int, status);
        QFETCH(int, exitCode);
        m_fixture->api().loginResult.status = status;
        if (status == RequestResult::ServerError)
            m_fixture->api().loginResult.message = QStringLiteral("invalid_user_credentials");
        QCOMPARE(run({"--json", "login", "user@vpn.test"}, password), exitCode);
        QCOMPARE(m_passwordReads, 1);
        QCOMPARE(m_fixture->api().calls(QStringLiteral("loginByEmail")), password.isNull() ? 0 : 1);
        if (!password.isNull())
            QCOMPARE(m_fixture->api().lastPassword, password);
        QCOMPARE(tavero::Settings().token().isEmpty(), exitCode != Success);
        QCOMPARE(lastJson().value("server").toString(), exitCode == Success ? "fr-1" : "");
        // The password never reaches the output.
        QVERIFY(!m_out.contains("pass word") && !m_err.contains("pass word"));
    }

    void connect_data()
    {
        QTest::addColumn<Scenario>("scenario");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("dial refused")
            << Refused << int(ConnectFailed) << QStringList{"Connecting", "Failed"};
        QTest::newRow("held until SIGINT")
            << StopWhenConnected << int(Success)
            << QStringList{"Connecting", "Connected", "stopping", "Disconnected"};
        // SIGTERM while the dial still runs: queued, it is delivered by the attempt's nested loop.
        QTest::newRow("SIGTERM during the attempt")
            << StopDuringAttempt << int(Success)
            << QStringList{"Connecting", "stopping", "Connected", "Disconnected"};
    }

    void connect()
    {
        QFETCH(Scenario, scenario);
        QFETCH(int, exitCode);
        QFETCH(QStringList, expected);
        storeToken();
        if (scenario == Refused)
            m_fixture->platform().queueResult("connectIKEv2", OperationResult(QString("refused")));
        if (scenario == StopDuringAttempt)
            m_fixture->platform().setConnectDelay(100);
        int accountFetches = -1;
        const auto hook = [&](CliApp& app) {
            ConnectionChain& chain = m_fixture->manager().connection();
            const Qt::ConnectionType type =
                scenario == StopDuringAttempt ? Qt::QueuedConnection : Qt::AutoConnection;
            QObject::connect(
                &chain, &ConnectionChain::modeChanged, &chain,
                [&, &app = app] {
                    if (scenario == StopDuringAttempt) {
                        if (chain.mode() == ConnectionChain::Connecting)
                            app.requestStop(SIGTERM);
                        return;
                    }
                    if (chain.mode() != ConnectionChain::Connected)
                        return;
                    accountFetches = m_fixture->api().calls(QStringLiteral("receiveAccountInfo"));
                    // A stop from the event loop, as SIGINT.
                    QTimer::singleShot(0, &chain, [&app] { app.requestStop(SIGINT); });
                },
                type);
        };
        QCOMPARE(run({"--json", "connect", "--country", "de"}, QString(), hook), exitCode);
        QCOMPARE(events(), expected);
        QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 1);
        QVERIFY(m_fixture->manager().connection().mode() != ConnectionChain::Connected);
        if (scenario == StopWhenConnected) {
            QCOMPARE(jsonLines()[1].value("server").toString(), QStringLiteral("de-2"));
            QCOMPARE(jsonLines()[2].value("signal").toString(), QStringLiteral("SIGINT"));
            // Fresh VPN credentials before the attempt (one at the log-in, one before connecting).
            QCOMPARE(accountFetches, 2);
        }
    }

    void secondCommandWhileLockHeldIsBusy()
    {
        QDir().mkpath(QFileInfo(CliApp::lockFilePath()).absolutePath());
        tavero::cli::CommandLock other(CliApp::lockFilePath());
        QCOMPARE(other.tryLock(), tavero::cli::CommandLock::State::Held);
        storeToken();
        QCOMPARE(run({"--json", "servers"}), int(Busy));
        QCOMPARE(run({"--json", "connect"}), int(Busy));
        QCOMPARE(m_fixture->exchanges(), 0);
        // logout does not manage the tunnel and still works.
        QCOMPARE(run({"--json", "logout"}), int(Success));
    }

    // Each country with its least loaded available server, or none; as JSON and as text.
    void serversNameTheBestServerOrNone_data()
    {
        QTest::addColumn<bool>("json");
        QTest::newRow("json") << true;
        QTest::newRow("text") << false;
    }

    void serversNameTheBestServerOrNone()
    {
        QFETCH(bool, json);
        storeToken();
        QCOMPARE(run(json ? QStringList{"--json", "servers"} : QStringList{"servers"}),
                 int(Success));
        if (json) {
            QStringList best;
            for (const QJsonValue& country : lastJson().value("all").toArray())
                best << country["code"].toString() + ":" + country["bestServer"].toString("none");
            QCOMPARE(best, QStringList({"FR:fr-1", "DE:de-2", "NL:none"}));
        } else {
            QVERIFY2(m_out.contains("Germany") && m_out.contains("de-2") &&
                         m_out.contains("no available server"),
                     m_out.constData());
        }
        // Neither needs the manager.
        QCOMPARE(run(json ? QStringList{"--json", "--version"} : QStringList{"--help"}),
                 int(Success));
        QVERIFY(json ? lastJson().contains("version") : m_out.contains("Usage: tavero-cli"));
    }

    // What `login` reads at a terminal: the password is not echoed, and the echo comes back
    // afterwards.
    void passwordAtATerminalIsNotEchoed()
    {
        int master = -1;
        int slave = -1;
        QCOMPARE(::openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
        std::FILE* terminal = ::fdopen(slave, "r");
        std::FILE* prompt = std::tmpfile();
        QVERIFY(terminal && prompt);
        const auto echoing = [slave] {
            termios mode{};
            return ::tcgetattr(slave, &mode) == 0 && (mode.c_lflag & ECHO) != 0;
        };
        QString password;
        bool read = false;
        std::thread reader([&] { read = PasswordReader(terminal, prompt).read(password); });
        // Typed only once the reader has silenced the terminal (which drops what came before).
        const bool silenced = QTest::qWaitFor([&] { return !echoing(); });
        QCOMPARE(::write(master, "pass word\n", 10), ssize_t(10));
        reader.join();
        QVERIFY(silenced && read);
        QCOMPARE(password, QString("pass word"));
        QVERIFY(echoing());
        char echoed[64];
        ::fcntl(master, F_SETFL, O_NONBLOCK);
        QVERIFY(::read(master, echoed, sizeof echoed) <= 0);
        std::rewind(prompt);
        char shown[32] = {};
        QCOMPARE(QByteArray(shown, int(std::fread(shown, 1, sizeof shown, prompt))),
                 QByteArray("Password: \n"));
        std::fclose(prompt);
        std::fclose(terminal);
        ::close(master);
    }

private:
    // Runs one command; the manager comes from the fixture. `beforeRun` may act on the app.
    int run(const QStringList& arguments, const QString& password = QStringLiteral("secret"),
            const std::function<void(CliApp&)>& beforeRun = {});
    QVector<QJsonObject> jsonLines() const;
    QJsonObject lastJson() const { return jsonLines().value(jsonLines().size() - 1); }
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

int TestCliApp::run(const QStringList& arguments, const QString& password,
                    const std::function<void(CliApp&)>& beforeRun)
{
    CliOptions options;
    QString error;
    if (!CliOptions::parse(arguments, options, error))
        qFatal("bad test arguments: %s", qPrintable(error));
    m_app.reset();
    for (QBuffer* buffer : {&m_outBuffer, &m_errBuffer}) {
        if (!buffer->isOpen())
            buffer->open(QIODevice::WriteOnly | QIODevice::Append);
    }
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
    QObject::connect(&watchdog, &QTimer::timeout, [this] { m_app->requestStop(SIGALRM); });
    watchdog.start(60000);
    return m_app->run();
}

QVector<QJsonObject> TestCliApp::jsonLines() const
{
    QVector<QJsonObject> lines;
    for (const QByteArray& line : m_out.split('\n')) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (!line.isEmpty())
            lines << (document.isObject() ? document.object() : QJsonObject{{"bad line", "x"}});
    }
    return lines;
}

QStringList TestCliApp::events() const
{
    QStringList names;
    for (const QJsonObject& line : jsonLines()) {
        const QString event = line.value("event").toString();
        if (event.isEmpty())
            continue;
        names << (event == QLatin1String("mode") ? line.value("mode").toString() : event);
        // Every event carries a UTC time stamp with milliseconds.
        const QString time = line.value("time").toString();
        if (!QDateTime::fromString(time, Qt::ISODateWithMs).isValid() || !time.endsWith('Z'))
            names << QStringLiteral("bad time ") + time;
    }
    return names;
}

TAVERO_TEST_GUILESS_MAIN(TestCliApp)
#include "tst_cliapp.moc"
