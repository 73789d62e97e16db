#include "api/serverapi.h"
#include "app/settings.h"
#include "connection/connectionchain.h"
#include "connection/killswitcher.h"
#include "manager/serverlistqueries.h"
#include "platform/linux/interfacebackend.h"
#include "platform/linux/linuxplatform.h"
#include "platform/platformoverrides.h"
#include "support/devservice.h"
#include "support/standinlog.h"
#include "support/testenvironment.h"
#include "support/testplatform.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <sched.h>
#include <unistd.h>

using tavero::ConnectionChain;
using tavero::test::DevService;
using tavero::test::StandInLog;

namespace {

// The interface of the test's own network namespace that a client's kill switch cuts.
const QString cutInterface = QStringLiteral("chaos0");

QString ip(const QStringList& arguments)
{
    QProcess ip;
    ip.start(QStringLiteral("ip"), arguments);
    ip.waitForFinished();
    return QString::fromUtf8(ip.readAllStandardOutput());
}

bool isUp(const QString& linkLine)
{
    return linkLine.section('<', 1, 1).section('>', 0, 0).split(',').contains("UP");
}

// The JSON line of `output` from `from` on that contains `needle`; empty when none does.
QJsonObject lineWith(const QByteArray& output, const QByteArray& needle, int from = 0)
{
    const int at = output.indexOf(needle, from);
    const int start = output.lastIndexOf('\n', at) + 1;
    return at < 0 ? QJsonObject()
                  : QJsonDocument::fromJson(output.mid(start, output.indexOf('\n', at) - start))
                        .object();
}

bool cutInterfaceUp()
{
    return isUp(ip({"-o", "link", "show", cutInterface}));
}

// Every interface with its administrative state.
QStringList linkStates()
{
    QStringList state;
    for (const QString& line : ip({"-o", "link", "show"}).split('\n', Qt::SkipEmptyParts))
        state << line.section(": ", 1, 1).section('@', 0, 0) + (isUp(line) ? " up" : " down");
    return state;
}

// The links and the IPv4 routes: what a kill switch must give back exactly.
QStringList networkState()
{
    return linkStates() + ip({"-4", "route", "show"}).split('\n', Qt::SkipEmptyParts);
}

// Moves the whole process (and so every thread and child it starts from now on) into a new
// network namespace that ends with it: nothing here can cut the host. It gets loopback, a veth
// pair with an address and routes, and a second pair with one end down that must stay down.
// Called before any thread exists.
bool enterOwnNamespace()
{
    return ::geteuid() == 0 && ::unshare(CLONE_NEWNET) == 0 &&
           std::system("ip link set lo up && "
                       "ip link add chaos0 type veth peer name chaos1 && "
                       "ip link add chaos2 type veth peer name chaos3 && "
                       "ip addr add 10.200.0.1/24 dev chaos0 && "
                       "ip link set chaos0 up && ip link set chaos1 up && ip link set chaos2 up && "
                       "ip route add 10.201.0.0/16 via 10.200.0.2 dev chaos0 proto static && "
                       "ip route add default via 10.200.0.2 dev chaos0") == 0;
}

} // namespace

// The connection engine and tavero-cli against the development service with the OpenVPN
// stand-in: the engine under a seeded random sequence of user actions, service faults and process
// faults with invariants checked after every step (TAVERO_CHAOS_SEED replays a sequence), the kill
// switch against a hanging IP check, tavero-cli's whole flow, and, in the process's own network
// namespace, the interface switch and a tavero-cli killed at random moments.
class TestChaos : public QObject {
    Q_OBJECT
public:
    explicit TestChaos(bool ownNamespace)
        : m_ownNamespace(ownNamespace)
    {}

private slots:
    void initTestCase()
    {
        m_seed = qEnvironmentVariableIsSet("TAVERO_CHAOS_SEED")
                     ? qEnvironmentVariable("TAVERO_CHAOS_SEED").toUInt()
                     : QRandomGenerator::global()->generate();
        QVERIFY(QFile::link(qEnvironmentVariable("TAVERO_FAKE_OPENVPN"),
                            m_programDir.filePath("openvpn")));
        m_service = std::make_unique<DevService>();
        QVERIFY2(m_service->isRunning(), qPrintable(m_service->errorText()));
        m_service->exportEnvironment();
        qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", "success");
        qputenv(
            "TAVERO_FAKE_OPENVPN_TUNNEL",
            QString("%1:%2").arg(m_service->tunnelHost()).arg(m_service->tunnelPort()).toUtf8());
        tavero::PlatformOverrides::setAdministrator(true);
        tavero::PlatformOverrides::setRdpListening(false);
        tavero::ServerApi api(m_service->endpoints());
        QCOMPARE(api.loginByEmail(account().email, account().password).status, 0);
        m_list = api.receiveServerList();
        m_recommended = api.receiveRecommendedServerList(QString());
        for (const auto& servers : m_list.serversByCountry) {
            for (const VpnServerInformation& server : servers) {
                if (server.hasOvpnConfig && m_servers.size() < 3)
                    m_servers << server;
            }
        }
        QCOMPARE(m_servers.size(), 3);
    }

    void cleanup()
    {
        if (QTest::currentTestFailed()) {
            qWarning().noquote() << "Last steps:\n" + m_trail.mid(m_trail.size() - 12).join('\n')
                                 << "\nReplay with TAVERO_CHAOS_SEED=" + QString::number(m_seed);
        }
        m_trail.clear();
    }

    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        QVERIFY(m_service->reset()); // faults an earlier test left queued are its own
        tavero::ServerApi::resetSharedCaches();
    }

    void engineUnderChaos()
    {
        StandInLog standIns;
        Engine engine(*this, 300);
        auto& [api, platform, settings, killSwitcher, chain] = engine;
        settings.setProtocolTypes(OvpnUdp | OvpnTcp);

        const auto server = [this](int arg) { return m_servers.at(arg % m_servers.size()); };
        const QFlags<ProtocolType> protocols[] = {OvpnUdp, OvpnTcp, OvpnUdp | OvpnTcp};
        const QVector<std::pair<QString, std::function<void(int)>>> actions = {
            {"connect", [&](int arg) { chain.connect(server(arg)); }},
            {"disconnect", [&](int) { chain.disconnect(); }},
            {"server change",
             [&](int arg) {
                 chain.serverWasChanged(server(arg));
                 chain.connect(server(arg));
             }},
            {"protocol change",
             [&](int arg) {
                 settings.setProtocolTypes(protocols[arg % 3]);
                 chain.connect(server(arg / 3));
             }},
            {"kill switch", [&](int arg) { settings.setKillSwitch(arg % 2); }},
            {"break", [&](int) { m_service->dropTunnels(); }},
            {"slow IP check", [&](int arg) { m_service->delayNext("/json", 1 + arg % 2, 600); }},
            {"failing IP check",
             [&](int) { m_service->failNext("/json", 1, DevService::Failure::Status); }},
            {"token expiry", [&](int) { m_service->expireTokens(); }},
            {"openvpn dies",
             [&](int) {
                 for (const qint64 pid : standIns.live())
                     ::kill(pid_t(pid), SIGKILL);
             }},
            // Every openvpn started meanwhile reports an error and keeps running.
            {"openvpn refuses",
             [&](int arg) {
                 qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", "error");
                 chain.connect(server(arg));
                 qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", "success");
             }},
        };

        // Empty when the engine's state and reality agree.
        const auto disagreement = [&]() -> QString {
            const QVector<qint64> live = standIns.live();
            const bool tunnel = chain.currProtocolName() != QLatin1String("Disconnected");
            if (live.size() != (tunnel ? 1 : 0))
                return QString("%1 openvpn run, chain has %2").arg(live.size()).arg(tunnel);
            if (!standIns.leftoverConfigs().isEmpty())
                return "the configuration file of an ended openvpn is left";
            if (chain.mode() == ConnectionChain::Connecting)
                return "Connecting with no attempt running";
            if (chain.mode() != ConnectionChain::Connected && tunnel)
                return QString("a tunnel in mode %1").arg(int(chain.mode()));
            if (chain.isKillswitched() != platform.isNetworkOff())
                return "the kill switch's state is not the network's";
            if (chain.mode() == ConnectionChain::Connected &&
                m_service->openTunnels() != QStringList{chain.currentServer().host})
                return "Connected without a verified live tunnel";
            return {};
        };

        QRandomGenerator random(m_seed);
        int pending = 0;
        int openVpnPeak = 0; // the most openvpn seen running right after an action
        QObject scheduled;   // owns the pending actions: none fires after the test
        QElapsedTimer clock;
        clock.start();
        int step = 0;
        while (step < 300 && clock.elapsed() < 60000) {
            // One to three steps at random moments, so they land inside each other's waits; the
            // agreement is checked once they all have ended and the engine has settled.
            for (int i = 1 + random.bounded(3); i > 0; --i, ++step) {
                const int kind = random.bounded(actions.size());
                const int arg = random.bounded(1 << 16);
                const int delay = random.bounded(250);
                m_trail << QString::asprintf("%d: %s (%d) +%d ms", step,
                                             qPrintable(actions[kind].first), arg, delay);
                ++pending;
                QTimer::singleShot(delay, &scheduled, [&, kind, arg] {
                    actions[kind].second(arg);
                    openVpnPeak = std::max(openVpnPeak, int(standIns.live().size()));
                    --pending;
                });
            }
            QDeadlineTimer deadline(30000);
            QString state = QStringLiteral("steps pending");
            while (!state.isEmpty() && !deadline.hasExpired()) {
                QTest::qWait(10);
                openVpnPeak = std::max(openVpnPeak, int(standIns.live().size()));
                state = pending > 0 ? QStringLiteral("steps pending") : disagreement();
            }
            QVERIFY2(openVpnPeak <= 1, "two openvpn ran at once");
            QVERIFY2(state.isEmpty(),
                     qPrintable(QString("after step %1: %2").arg(step - 1).arg(state)));
        }
        qInfo("%d steps, seed %u", step, m_seed);
        QVERIFY(chain.disconnect().isSuccess);
        QVERIFY(standIns.live().isEmpty());
        QCOMPARE(standIns.leftoverConfigs(), QStringList{});
    }

    // IKEv2 (scripted) comes up but the service still sees the real address: it is dropped for
    // OpenVPN over UDP, which verifies. That OpenVPN then ends while the IP check hangs, as one
    // riding a kept-alive connection through the dead tunnel would: the kill switch must not wait
    // for that answer.
    void deadTunnelCutsTheNetworkAtOnce()
    {
        Engine engine(*this, 500); // all protocols
        engine.settings.setKillSwitch(true);
        QVERIFY(engine.chain.connect(m_servers.first()).isSuccess);
        QCOMPARE(engine.chain.currProtocolName(), QString("Open VPN UDP"));
        QCOMPARE(engine.platform.callNames().filter(QRegularExpression("^connect|^disconnect$")),
                 (QStringList{"disconnect", "connectIKEv2", "disconnect"}));
        const int hangMs = 10000;
        QVERIFY(m_service->delayNext("/json", 2, hangMs));
        QElapsedTimer sinceDrop;
        qint64 failedAfterMs = -1;
        connect(&engine.chain, &ConnectionChain::modeChanged, this, [&] {
            if (engine.chain.mode() == ConnectionChain::Failed && failedAfterMs < 0)
                failedAfterMs = sinceDrop.elapsed();
        });
        sinceDrop.start();
        QVERIFY(m_service->dropTunnels());
        QTRY_VERIFY_WITH_TIMEOUT(failedAfterMs >= 0, 3 * hangMs);
        QVERIFY2(failedAfterMs < hangMs, "the kill switch waited for the hanging IP check");
        QVERIFY(engine.platform.isNetworkOff());
        QVERIFY(m_service->openTunnels().isEmpty());
    }

    // The interface switch for real, in this namespace: off cuts every interface but loopback,
    // on gives back exactly what was there (the interface that was down stays down, the routes
    // come back); with nothing to switch, both say so.
    void interfaceSwitchGivesBackExactly()
    {
        if (!m_ownNamespace)
            QSKIP("needs a network namespace of its own (root)");
        const QStringList before = networkState();
        tavero::LinuxPlatform::Options options;
        options.networkBackendFactory = [] { return std::make_unique<tavero::InterfaceBackend>(); };
        tavero::LinuxPlatform platform(std::move(options));
        const OperationResult off = platform.turnOffInternet();
        QVERIFY2(off.isSuccess, qPrintable(off.message));
        QCOMPARE(networkState().filter(QRegularExpression(" up$")), QStringList{"lo up"});
        QCOMPARE(platform.turnOffInternet().message, "warning.failed_to_turn_off_the_internet");
        bool reenabled = false;
        const OperationResult on = platform.turnOnInternet(reenabled);
        QVERIFY2(on.isSuccess && reenabled, qPrintable(on.message));
        QTRY_COMPARE(networkState(), before);
        QCOMPARE(platform.turnOnInternet(reenabled).message,
                 "warning.failed_to_turn_on_the_internet");
        QVERIFY(!reenabled);
    }

    // tavero-cli as a script uses it, with the kill switch off (TAVERO_KEEP_NETWORK=1): log in
    // with the password on standard input, list, connect to a chosen country, survive a tunnel
    // break, stop on SIGINT leaving no openvpn behind.
    void cliLoginListConnectBreakStop()
    {
        if (::geteuid() != 0)
            QSKIP("tavero-cli offers OpenVPN only with administrator rights (run as root)");
        StandInLog standIns;
        QJsonObject result;
        QCOMPARE(runCli({"login", account().email}, result, account().password.toUtf8() + "\n"), 0);
        QCOMPARE(result.value("email").toString(), account().email);
        QCOMPARE(runCli({"servers"}, result), 0);
        QVERIFY(!result.value("recommended").toArray().isEmpty());
        QVERIFY(result.value("all").toArray().size() >=
                result.value("recommended").toArray().size());

        // A country whose server as tavero-cli picks it (from the recommended list first) has
        // an OpenVPN configuration.
        QString country;
        QString server;
        for (auto it = m_list.countriesByCode.cbegin(); it != m_list.countriesByCode.cend(); ++it) {
            QString name =
                tavero::ServerListQueries::bestServerNameByCountryCode(m_recommended, it.key());
            if (name.isEmpty())
                name = tavero::ServerListQueries::bestServerNameByCountryCode(m_list, it.key());
            for (const VpnServerInformation& candidate : m_list.serversByCountry.value(it->id)) {
                if (candidate.name == name && candidate.hasOvpnConfig)
                    std::tie(country, server) = std::pair(it.key(), name);
            }
        }
        QVERIFY(!server.isEmpty());

        tavero::Settings().setProtocolTypes(OvpnUdp); // the stand-in's scenario
        QProcess connect;
        startCli(connect, {"connect", "--country", country.toUpper()});
        QByteArray output;
        const auto waitFor = [&](const QByteArray& needle, int from = 0) {
            const QDeadlineTimer deadline(60000);
            while ((output += connect.readAllStandardOutput()).indexOf(needle, from) < 0) {
                if (deadline.hasExpired() || connect.state() == QProcess::NotRunning)
                    return false;
                connect.waitForReadyRead(200);
            }
            return true;
        };
        const QByteArray connected = "\"mode\":\"Connected\"";
        QVERIFY2(waitFor(connected), output.constData());
        QCOMPARE(lineWith(output, connected).value("server").toString(), server);
        QCOMPARE(lineWith(output, connected).value("protocol").toString(), "Open VPN UDP");
        QCOMPARE(tavero::Settings().serverName(), server);
        QCOMPARE(runCli({"status"}, result), 0);
        QCOMPARE(result.value("protected").toBool(), true);

        // A break from the service: the tunnel is re-established without anyone asking.
        const int before = output.size();
        QVERIFY(m_service->dropTunnels());
        QVERIFY2(waitFor("\"event\":\"reestablishing\"", before), output.constData());
        const QByteArray reestablished = "\"event\":\"reestablished\"";
        QVERIFY2(waitFor(reestablished, before), output.constData());
        QCOMPARE(lineWith(output, reestablished, before).value("success").toBool(), true);
        QVERIFY(output.indexOf(connected, before) >= 0);
        QCOMPARE(runCli({"status"}, result), 0);
        QCOMPARE(result.value("protected").toBool(), true);
        QVERIFY(standIns.starts().size() >= 2);

        // Ctrl-C in the terminal (SIGINT to the whole process group): disconnect, say so, end
        // with success, leave no OpenVPN behind, and start no new tunnel on the way out.
        const int stopAt = output.size();
        const int starts = standIns.starts().size();
        QVERIFY(::kill(-pid_t(connect.processId()), SIGINT) == 0);
        QVERIFY(connect.waitForFinished(30000));
        output += connect.readAllStandardOutput();
        QVERIFY(output.indexOf("\"event\":\"stopping\"", stopAt) >= 0);
        QVERIFY(output.indexOf("\"mode\":\"Disconnected\"", stopAt) >= 0);
        QVERIFY2(output.indexOf("reestablish", stopAt) < 0, output.constData() + stopAt);
        QCOMPARE(standIns.starts().size(), starts);
        QCOMPARE(connect.exitCode(), 0);
        QCOMPARE(standIns.live(), QVector<qint64>());
        // The service notices the stand-in's closed control connection on its own thread.
        QTRY_VERIFY(m_service->openTunnels().isEmpty());
        QCOMPARE(runCli({"status"}, result), 9); // not protected any more
    }

    // tavero-cli, with the kill switch on and the interface switch of this namespace, killed with
    // SIGKILL at random moments (while connecting, connected, or after its kill switch cut the
    // network): the next start switches back on exactly the interfaces that were on and leaves
    // no openvpn or key behind.
    void killedClientLeavesNothingBehind()
    {
        if (!m_ownNamespace)
            QSKIP("needs a network namespace of its own (root)");
        StandInLog standIns;
        // Links and routes: the routes of a cut interface must come back after a crash too.
        const QStringList before = networkState();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("TAVERO_KEEP_NETWORK"); // this namespace is the test's own
        // No system bus: the interface switch, never a NetworkManager of the host.
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
        {
            tavero::Settings settings; // logged in, as `tavero-cli login` leaves it
            settings.setToken(tavero::ServerApi(m_service->endpoints())
                                  .loginByEmail(account().email, account().password)
                                  .token);
            settings.setKillSwitch(true);
            settings.setProtocolTypes(OvpnUdp);
            settings.setServerName(m_servers.first().name);
        }

        QRandomGenerator random(m_seed);
        for (const int moment : {2, int(random.bounded(3)), 2, int(random.bounded(3))}) {
            m_trail << QString("SIGKILL at moment %1").arg(moment);
            QVERIFY(cutInterfaceUp());
            QProcess connect;
            QVERIFY(startCli(connect, {"connect"}, environment));
            QByteArray output;
            if (moment == 0) {
                QTest::qWait(random.bounded(500));
            } else {
                // Ends early when the client gives up, so its own words are what fails.
                QTRY_VERIFY_WITH_TIMEOUT((output += connect.readAllStandardOutput())
                                                 .contains("\"mode\":\"Connected\"") ||
                                             connect.state() == QProcess::NotRunning,
                                         60000);
                output += connect.readAllStandardOutput();
                QVERIFY2(output.contains("\"mode\":\"Connected\""),
                         qPrintable(output + connect.readAllStandardError()));
                QCOMPARE(standIns.live().size(), 1);
            }
            if (moment == 2) {
                QVERIFY(m_service->dropTunnels());
                QTRY_VERIFY_WITH_TIMEOUT(!cutInterfaceUp(), 20000);
                QCOMPARE(connect.state(), QProcess::Running);
            }
            ::kill(pid_t(connect.processId()), SIGKILL);
            QVERIFY(connect.waitForFinished(10000));

            QProcess status;
            QVERIFY(startCli(status, {"status"}, environment));
            QVERIFY(status.waitForFinished(60000));
            QCOMPARE(networkState(), before);
            QTRY_VERIFY(standIns.live().isEmpty());
            QCOMPARE(standIns.leftoverConfigs(), QStringList{});
            QVERIFY(!QFile::exists(tavero::LinuxPlatform::killSwitchStateFileDefault()));
        }
    }

private:
    DevService::Account account() const { return m_service->account(0); }

    static bool
    startCli(QProcess& process, const QStringList& arguments,
             const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        process.setProcessEnvironment(environment);
        // A session of its own (setsid execs in place: the same process), as a terminal gives.
        process.start(
            "setsid",
            QStringList{qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + "/tavero-cli", "--json"} +
                arguments);
        return process.waitForStarted();
    }
    // Runs a command to its end; its exit code (-1: no normal end) and its last JSON line.
    static int runCli(const QStringList& arguments, QJsonObject& result,
                      const QByteArray& input = {})
    {
        QProcess run;
        startCli(run, arguments);
        run.write(input);
        run.closeWriteChannel();
        const bool ended = run.waitForFinished(60000) && run.exitStatus() == QProcess::NormalExit;
        result = QJsonDocument::fromJson(run.readAllStandardOutput().trimmed().split('\n').last())
                     .object();
        if (!ended || run.exitCode() != 0)
            qWarning("tavero-cli %s: %s", qPrintable(arguments.join(' ')),
                     run.readAllStandardError().constData());
        return ended ? run.exitCode() : -1;
    }

    // The real chain over the development service, with the network switch and IKEv2 scripted.
    struct Engine {
        Engine(const TestChaos& test, int reestablishIntervalMs)
            : api(test.m_service->endpoints())
            , chain(api, platform, settings, killSwitcher, options(test, reestablishIntervalMs))
        {
            api.loginByEmail(test.account().email, test.account().password);
        }
        static ConnectionChain::Options options(const TestChaos& test, int reestablishIntervalMs)
        {
            ConnectionChain::Options options;
            options.openVpnDirectory = test.m_programDir.path();
            options.openVpnLimits.connectLimit = std::chrono::milliseconds(8000);
            options.keeperIntervalMs = 100;
            options.reestablishIntervalMs = reestablishIntervalMs;
            return options;
        }
        tavero::ServerApi api;
        tavero::test::TestPlatform platform;
        tavero::Settings settings;
        tavero::KillSwitcher killSwitcher{api, platform, settings};
        ConnectionChain chain;
    };

    const bool m_ownNamespace;
    quint32 m_seed = 0;
    QStringList m_trail;
    QTemporaryDir m_programDir;
    std::unique_ptr<DevService> m_service;
    QVector<VpnServerInformation> m_servers; // three with OpenVPN
    ServerListGettingResult m_list;
    ServerListGettingResult m_recommended;
};

int main(int argc, char** argv)
{
    const bool ownNamespace = enterOwnNamespace();
    tavero::test::TestEnvironment environment;
    QCoreApplication app(argc, argv);
    TestChaos test(ownNamespace);
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_chaos.moc"
