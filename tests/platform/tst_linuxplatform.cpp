#include "platform/linux/autostartentry.h"
#include "platform/linux/linuxplatform.h"
#include "platform/platformoverrides.h"
#include "support/testmain.h"

#include <QTranslator>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

using tavero::AutostartEntry;
using tavero::LinuxPlatform;
using tavero::NetworkConnection;
using tavero::NetworkSwitchBackend;
using tavero::NetworkSwitchStatus;
using tavero::PlatformOverrides;

namespace {

// A machine's connections as the fake backend sees them, shared by every backend made for it.
struct FakeNetwork {
    struct Connection {
        QString id;
        bool on = false;
    };
    QVector<Connection> connections; // in the system's order
    int openError = 0;
    int listError = 0;
    QStringList failingSwitches; // ids whose switch reports an error (and does not happen)
    QStringList log;             // "off:ID", "on:ID" for every switch attempted
    int backendsMade = 0;

    Connection* find(const QString& id)
    {
        for (Connection& connection : connections) {
            if (connection.id == id)
                return &connection;
        }
        return nullptr;
    }
    QStringList onIds() const
    {
        QStringList ids;
        for (const Connection& connection : connections) {
            if (connection.on)
                ids << connection.id;
        }
        return ids;
    }
};

class FakeBackend : public NetworkSwitchBackend {
public:
    explicit FakeBackend(std::shared_ptr<FakeNetwork> network)
        : m_network(std::move(network))
    {}
    QString name() const override { return QStringLiteral("fake"); }
    NetworkSwitchStatus open() override
    {
        if (m_network->openError != 0)
            return NetworkSwitchStatus::failure(m_network->openError, QStringLiteral("refused"));
        return {};
    }
    void close() override {}
    NetworkSwitchStatus listSwitchedOn(QVector<NetworkConnection>& connections) override
    {
        if (m_network->listError != 0)
            return NetworkSwitchStatus::failure(m_network->listError, QStringLiteral("list"));
        for (const FakeNetwork::Connection& connection : qAsConst(m_network->connections)) {
            if (connection.on)
                connections.append({connection.id, connection.id, QString()});
        }
        return {};
    }
    NetworkSwitchStatus stateOf(const QString& id, State& state) override
    {
        const FakeNetwork::Connection* connection = m_network->find(id);
        state = !connection ? State::Missing : connection->on ? State::On : State::Off;
        return {};
    }
    NetworkSwitchStatus switchOff(const NetworkConnection& connection) override
    {
        return flip(connection.id, false);
    }
    NetworkSwitchStatus switchOn(const QString& id) override { return flip(id, true); }

private:
    NetworkSwitchStatus flip(const QString& id, bool on)
    {
        m_network->log << (on ? QStringLiteral("on:") : QStringLiteral("off:")) + id;
        if (m_network->failingSwitches.contains(id))
            return NetworkSwitchStatus::failure(5, QStringLiteral("denied"));
        m_network->find(id)->on = on;
        return {};
    }
    std::shared_ptr<FakeNetwork> m_network;
};

std::shared_ptr<FakeNetwork> makeNetwork(const QVector<FakeNetwork::Connection>& connections)
{
    auto network = std::make_shared<FakeNetwork>();
    network->connections = connections;
    return network;
}

LinuxPlatform::Options optionsFor(const std::shared_ptr<FakeNetwork>& network)
{
    LinuxPlatform::Options options;
    options.networkBackendFactory = [network] {
        ++network->backendsMade;
        return std::make_unique<FakeBackend>(network);
    };
    return options;
}

// Every platform operation whose worker throws, to see what its wrapper makes of it.
class ThrowingPlatform : public LinuxPlatform {
protected:
    OperationResult forceDisconnect() override { throw std::runtime_error("disconnect"); }
    OperationResult forceConnectPptp(const QString&, const QString&, const QString&) override
    {
        throw std::runtime_error("pptp");
    }
    OperationResult forceConnectL2tp(const QString&, const QString&, const QString&,
                                     const QString&) override
    {
        throw 42; // not even a std::exception
    }
    OperationResult forceConnectIKEv2(const QString&, const QString&, const QString&, bool) override
    {
        throw std::runtime_error("ikev2");
    }
    OperationResult forceTurnOffInternet() override { throw std::runtime_error("off"); }
    OperationResult forceTurnOnInternet(bool& reenabled) override
    {
        reenabled = true; // set before the failure: must not leak out of turnOnNetDevices
        throw std::runtime_error("on");
    }
};

// Stands in for the English catalogue where a test needs a text with a place for an argument.
class EnglishTexts : public QTranslator {
public:
    QString translate(const char* context, const char* key, const char* = nullptr,
                      int = -1) const override
    {
        if (qstrcmp(context, "QObject") == 0 &&
            qstrcmp(key, "warning.could_not_connect_to_the_connection_manager_library") == 0)
            return QStringLiteral("Unable to connect to the 'Connection Manager' library (%1)");
        return QString();
    }
    bool isEmpty() const override { return false; }
};

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

const QByteArray tcpHeader =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout "
    "inode\n";

} // namespace

class TestLinuxPlatform : public QObject {
    Q_OBJECT
private slots:
    void cleanup()
    {
        PlatformOverrides::setAdministrator(std::nullopt);
        PlatformOverrides::setRdpListening(std::nullopt);
        QDir(configHome() + QStringLiteral("/autostart")).removeRecursively();
    }

    // --- start entry -------------------------------------------------------------------------

    // Rows with `roundTrip` write the program as an Exec value and read it back; the others only
    // read an Exec value written by someone else.
    void execValueQuotesAndEscapes_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("exec");
        QTest::addColumn<bool>("roundTrip");
        QTest::newRow("plain") << "/opt/tavero/tavero"
                               << "/opt/tavero/tavero" << true;
        QTest::newRow("blank") << "/home/ann lee/tavero"
                               << "\"/home/ann lee/tavero\"" << true;
        QTest::newRow("quote and dollar") << "/opt/a\"b$c/tavero"
                                          << "\"/opt/a\\\\\"b\\\\$c/tavero\"" << true;
        QTest::newRow("backslash") << "/opt/a\\b/tavero"
                                   << "\"/opt/a\\\\\\\\b/tavero\"" << true;
        QTest::newRow("with arguments") << "/usr/bin/tavero"
                                        << "/usr/bin/tavero --hidden %U" << false;
        QTest::newRow("escaped blank in value") << "/a b/tavero"
                                                << "\"/a\\sb/tavero\"" << false;
        QTest::newRow("unterminated quote") << ""
                                            << "\"/a b/tavero" << false;
    }
    void execValueQuotesAndEscapes()
    {
        QFETCH(QString, program);
        QFETCH(QString, exec);
        QFETCH(bool, roundTrip);
        if (roundTrip)
            QCOMPARE(AutostartEntry::execValue(program), exec);
        QCOMPARE(AutostartEntry::programOf(exec), program);
    }

    void runOnStartWritesAnEntryForThisProgram()
    {
        LinuxPlatform::Options options;
        options.programPath = QStringLiteral("/opt/Tavero VPN/tavero");
        LinuxPlatform platform(std::move(options));
        const QString file = configHome() + QStringLiteral("/autostart/tavero.desktop");
        QCOMPARE(platform.autostartFilePath(), file);
        QVERIFY(!platform.isRunOnStart());

        platform.setRunOnStart(true);
        QVERIFY(platform.isRunOnStart());
        const QString content = readFile(file);
        QVERIFY2(content.startsWith(QLatin1String("[Desktop Entry]\n")), qPrintable(content));
        QVERIFY2(content.contains(QLatin1String("\nExec=\"/opt/Tavero VPN/tavero\"\n")),
                 qPrintable(content));
        QVERIFY(content.contains(QLatin1String("\nType=Application\n")));

        LinuxPlatform::Options elsewhere;
        elsewhere.programPath = QStringLiteral("/usr/bin/tavero");
        QVERIFY2(!LinuxPlatform(std::move(elsewhere)).isRunOnStart(),
                 "an entry for another copy of the program is not ours");

        platform.setRunOnStart(false);
        QVERIFY(!QFileInfo::exists(file));
        QVERIFY(!platform.isRunOnStart());
        platform.setRunOnStart(false); // removing twice is harmless
        QVERIFY(!platform.isRunOnStart());
    }

    void runOnStartReadsOnlyTheDesktopEntryGroup_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("ours");
        QTest::newRow("ours with arguments")
            << QByteArray("[Desktop Entry]\nType=Application\nExec=/opt/t/tavero --min\n") << true;
        QTest::newRow("foreign program")
            << QByteArray("[Desktop Entry]\nExec=/usr/bin/other\n") << false;
        QTest::newRow("exec in another group")
            << QByteArray("[Desktop Entry]\nName=x\n[Desktop Action a]\nExec=/opt/t/tavero\n")
            << false;
        QTest::newRow("garbage") << QByteArray("\x01\x02 not an entry") << false;
    }
    void runOnStartReadsOnlyTheDesktopEntryGroup()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, ours);
        LinuxPlatform::Options options;
        options.programPath = QStringLiteral("/opt/t/tavero");
        LinuxPlatform platform(std::move(options));
        writeFile(platform.autostartFilePath(), content);
        QCOMPARE(platform.isRunOnStart(), ours);
    }

    void rootHandsTheEntryToTheUser()
    {
        if (::geteuid() != 0)
            QSKIP("only a root copy changes owners");
        QTemporaryDir userConfig;
        const uid_t nobody = 65534;
        QCOMPARE(::chown(QFile::encodeName(userConfig.path()).constData(), nobody, nobody), 0);
        LinuxPlatform::Options options;
        options.autostartDirectory = userConfig.filePath(QStringLiteral("autostart"));
        options.programPath = QStringLiteral("/opt/t/tavero");
        LinuxPlatform platform(std::move(options));
        platform.setRunOnStart(true);
        QVERIFY(platform.isRunOnStart());
        for (const QString& path :
             {userConfig.filePath(QStringLiteral("autostart")), platform.autostartFilePath()}) {
            struct stat info {};
            QCOMPARE(::stat(QFile::encodeName(path).constData(), &info), 0);
            QCOMPARE(info.st_uid, nobody);
        }
    }

    // --- remote desktop ----------------------------------------------------------------------

    void rdpListenerIsFoundInEitherTable_data()
    {
        QTest::addColumn<QByteArray>("tcp");
        QTest::addColumn<QByteArray>("tcp6");
        QTest::addColumn<bool>("listening");
        const QByteArray sshListen =
            "   0: 00000000:0016 00000000:0000 0A 00000000:00000000 00:00000000 00000000 0 0 1\n";
        QTest::newRow("ipv4 listener")
            << tcpHeader + sshListen +
                   "   1: 0100007F:0D3D 00000000:0000 0A 00000000:00000000 00:00000000 0 0 0 2\n"
            << tcpHeader << true;
        QTest::newRow("ipv6 listener")
            << tcpHeader + sshListen
            << tcpHeader + "   0: 00000000000000000000000000000000:0D3D "
                           "00000000000000000000000000000000:0000 0A 0:0 0:0 0 0 0 3\n"
            << true;
        QTest::newRow("established session on 3389 is not a listener")
            << tcpHeader + "   0: 0A00000F:0D3D 0A000001:C350 01 0:0 0:0 0 0 0 4\n"
            << tcpHeader << false;
        QTest::newRow("remote port 3389 does not count")
            << tcpHeader + "   0: 0A00000F:C350 0A000001:0D3D 0A 0:0 0:0 0 0 0 5\n"
            << tcpHeader << false;
        QTest::newRow("garbage") << QByteArray("0A 0D3D\n::::\n\x01\x02") << QByteArray() << false;
    }
    void rdpListenerIsFoundInEitherTable()
    {
        QFETCH(QByteArray, tcp);
        QFETCH(QByteArray, tcp6);
        QFETCH(bool, listening);
        QTemporaryDir directory;
        writeFile(directory.filePath(QStringLiteral("tcp")), tcp);
        writeFile(directory.filePath(QStringLiteral("tcp6")), tcp6);
        QCOMPARE(LinuxPlatform::IsRdpListening({directory.filePath(QStringLiteral("tcp")),
                                                directory.filePath(QStringLiteral("tcp6"))}),
                 listening);
    }

    void rdpTestSurvivesMissingTablesAndHonoursOverride()
    {
        QVERIFY(!LinuxPlatform::IsRdpListening({QStringLiteral("/nonexistent/tcp")}));
        QTemporaryDir directory;
        writeFile(directory.filePath(QStringLiteral("tcp")),
                  tcpHeader + "   0: 00000000:0D3D 00000000:0000 0A 0:0 0:0 0 0 0 2\n");
        QVERIFY(LinuxPlatform::IsRdpListening(
            {QStringLiteral("/nonexistent/tcp"), directory.filePath(QStringLiteral("tcp"))}));
        PlatformOverrides::setRdpListening(true);
        QVERIFY(LinuxPlatform::IsRdpListening());
        PlatformOverrides::setRdpListening(false);
        QVERIFY(!LinuxPlatform::IsRdpListening());
    }

    // --- dial-up -----------------------------------------------------------------------------

    void dialUpFailsWithItsMessages()
    {
        LinuxPlatform platform;
        QVERIFY(!platform.pptpSupports() && !platform.l2tpSupports());
        QVERIFY(platform.isPptpAsync() && platform.isL2tpAsync());
        QVERIFY(platform.disconnect().isSuccess);
        const OperationResult pptp = platform.connectPptp("vpn.example", "u", "p");
        QVERIFY(!pptp.isSuccess);
        QCOMPARE(pptp.message, QStringLiteral("warning.cannot_open_pptp_connection"));
        const OperationResult l2tp = platform.connectL2tp("vpn.example", "u", "p", "key");
        QVERIFY(!l2tp.isSuccess);
        QCOMPARE(l2tp.message, QStringLiteral("warning.cannot_open_l2tp_connection"));
    }

    void ikev2RefusesRoutesWithoutRights_data()
    {
        QTest::addColumn<bool>("administrator");
        QTest::addColumn<bool>("withoutAdminRights");
        QTest::addColumn<QString>("message");
        QTest::newRow("routes wanted, no rights")
            << false << false << "warning.unable_to_connect_using_IKEv2_protocol";
        QTest::newRow("routes wanted, rights")
            << true << false << "warning.cannot_open_ikev2_connection";
        QTest::newRow("no routes, no rights")
            << false << true << "warning.cannot_open_ikev2_connection";
    }
    void ikev2RefusesRoutesWithoutRights()
    {
        QFETCH(bool, administrator);
        QFETCH(bool, withoutAdminRights);
        QFETCH(QString, message);
        PlatformOverrides::setAdministrator(administrator);
        const OperationResult result =
            LinuxPlatform().connectIKEv2("vpn.example", "u", "p", withoutAdminRights);
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.message, message);
    }

    void wrappersTurnEscapingExceptionsIntoTheirMessages()
    {
        PlatformOverrides::setAdministrator(true);
        ThrowingPlatform platform;
        const auto expectFailure = [](const OperationResult& result, const char* message) {
            QVERIFY(!result.isSuccess);
            QCOMPARE(result.message, QString::fromLatin1(message));
        };
        expectFailure(platform.disconnect(), "warning.could_not_break_vpn_connection");
        expectFailure(platform.connectPptp("h", "u", "p"), "warning.could_not_connect_using_pptp");
        expectFailure(platform.connectL2tp("h", "u", "p", "k"),
                      "warning.unable_to_connect_using_L2TP_protocol");
        expectFailure(platform.connectIKEv2("h", "u", "p", false),
                      "warning.unable_to_connect_using_IKEv2_protocol");
        expectFailure(platform.turnOffInternet(), "warning.internet_connection_failed");
        bool reenabled = false;
        expectFailure(platform.turnOnInternet(reenabled), "warning.internet_shutdown_failed");
        QVERIFY2(!platform.turnOnNetDevices(), "an escaped exception means nothing came back");
    }

    // --- network switch-off and switch-on ----------------------------------------------------

    void switchOffThenOnRestoresExactlyTheRemembered()
    {
        auto network = makeNetwork({{"eth0", true}, {"wlan0", false}, {"tun0", true}});
        LinuxPlatform platform(optionsFor(network));
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());

        QVERIFY(platform.turnOffInternet().isSuccess);
        QCOMPARE(network->onIds(), QStringList());
        QCOMPARE(platform.rememberedConnections(), QStringList({"eth0", "tun0"}));
        QVERIFY(platform.haveDisabledNetDevicesByKillSwitch());

        // A second switch-off fails, keeps the list and stays on the same backend.
        const OperationResult second = platform.turnOffInternet();
        QVERIFY(!second.isSuccess);
        QCOMPARE(second.message, QStringLiteral("warning.failed_to_turn_off_the_internet"));
        QCOMPARE(platform.rememberedConnections(), QStringList({"eth0", "tun0"}));
        QCOMPARE(network->backendsMade, 1);

        bool reenabled = false;
        QVERIFY(platform.turnOnInternet(reenabled).isSuccess);
        QVERIFY(reenabled);
        QCOMPARE(network->onIds(), QStringList({"eth0", "tun0"}));
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        QCOMPARE(network->log, QStringList({"off:eth0", "off:tun0", "on:eth0", "on:tun0"}));
        QCOMPARE(network->backendsMade, 1);

        // With nothing remembered the backend is chosen afresh.
        QVERIFY(platform.turnOffInternet().isSuccess);
        QCOMPARE(network->backendsMade, 2);
    }

    void switchOnWithNothingRememberedFails()
    {
        auto network = makeNetwork({{"eth0", false}});
        LinuxPlatform platform(optionsFor(network));
        bool reenabled = true;
        const OperationResult result = platform.turnOnInternet(reenabled);
        QVERIFY(!reenabled);
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.message, QStringLiteral("warning.failed_to_turn_on_the_internet"));
        QVERIFY(network->log.isEmpty());
        QVERIFY(!platform.turnOnNetDevices());
    }

    void connectionsBackOrGoneMeanwhileAreLeftAloneAndForgotten_data()
    {
        QTest::addColumn<QStringList>("backByUser");
        QTest::addColumn<QStringList>("removed");
        QTest::addColumn<QStringList>("switchedOn");
        QTest::newRow("one back") << QStringList{"eth0"} << QStringList() << QStringList{"tun0"};
        QTest::newRow("one gone") << QStringList() << QStringList{"tun0"} << QStringList{"eth0"};
    }
    void connectionsBackOrGoneMeanwhileAreLeftAloneAndForgotten()
    {
        QFETCH(QStringList, backByUser);
        QFETCH(QStringList, removed);
        QFETCH(QStringList, switchedOn);
        auto network = makeNetwork({{"eth0", true}, {"tun0", true}});
        LinuxPlatform platform(optionsFor(network));
        QVERIFY(platform.turnOffInternet().isSuccess);
        network->log.clear();
        for (const QString& id : backByUser)
            network->find(id)->on = true;
        network->connections.erase(std::remove_if(network->connections.begin(),
                                                  network->connections.end(),
                                                  [&](const FakeNetwork::Connection& c) {
                                                      return removed.contains(c.id);
                                                  }),
                                   network->connections.end());

        bool reenabled = false;
        const OperationResult result = platform.turnOnInternet(reenabled);
        QStringList expectedLog;
        for (const QString& id : switchedOn)
            expectedLog << QStringLiteral("on:") + id;
        QCOMPARE(network->log, expectedLog);
        QCOMPARE(reenabled, !switchedOn.isEmpty());
        QCOMPARE(result.isSuccess, !switchedOn.isEmpty());
        QVERIFY2(!platform.haveDisabledNetDevicesByKillSwitch(), "the whole list is forgotten");
    }

    void lastSwitchDecidesTheResult_data()
    {
        QTest::addColumn<QStringList>("failing");
        QTest::addColumn<bool>("success");
        QTest::newRow("none fails") << QStringList() << true;
        QTest::newRow("last fails") << QStringList{"tun0"} << false;
        QTest::newRow("all fail") << QStringList{"eth0", "tun0"} << false;
    }
    void lastSwitchDecidesTheResult()
    {
        QFETCH(QStringList, failing);
        QFETCH(bool, success);
        auto network = makeNetwork({{"eth0", true}, {"tun0", true}});
        network->failingSwitches = failing;
        LinuxPlatform platform(optionsFor(network));
        const OperationResult off = platform.turnOffInternet();
        QCOMPARE(off.isSuccess, success);
        if (!success)
            QCOMPARE(off.message, QStringLiteral("warning.failed_to_turn_off_the_internet"));
        QVERIFY2(platform.rememberedConnections() == QStringList({"eth0", "tun0"}),
                 "a connection is remembered even when switching it off failed");

        // Switch-on: the ones that went off come back; one still on is left alone.
        for (FakeNetwork::Connection& connection : network->connections)
            connection.on = failing.contains(connection.id);
        network->log.clear();
        bool reenabled = false;
        const OperationResult on = platform.turnOnInternet(reenabled);
        QCOMPARE(reenabled, failing.size() < 2);
        QCOMPARE(on.isSuccess, failing.size() < 2);
        QCOMPARE(network->onIds(), QStringList({"eth0", "tun0"}));
    }

    void failedListingFailsTheSwitchOff()
    {
        auto network = makeNetwork({{"eth0", true}});
        network->listError = -33;
        LinuxPlatform platform(optionsFor(network));
        const OperationResult result = platform.turnOffInternet();
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.message, QStringLiteral("warning.failed_to_turn_off_the_internet"));
        QVERIFY(network->log.isEmpty());
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
    }

    void unreachableManagerIsReportedWithItsCode()
    {
        EnglishTexts english;
        QCoreApplication::installTranslator(&english);
        auto network = makeNetwork({{"eth0", true}});
        network->openError = -12;
        LinuxPlatform platform(optionsFor(network));
        const OperationResult off = platform.turnOffInternet();
        bool reenabled = true;
        const OperationResult on = platform.turnOnInternet(reenabled);
        QCoreApplication::removeTranslator(&english);

        QVERIFY(!off.isSuccess);
        QCOMPARE(off.message,
                 QStringLiteral("Unable to connect to the 'Connection Manager' library (-12)"));
        QCOMPARE(on.message, off.message);
        QVERIFY(!reenabled);
        QVERIFY(network->connections.first().on);
    }

    void testsNeverSwitchTheHostNetwork()
    {
        // Every test runs with TAVERO_KEEP_NETWORK=1: a platform left to choose its own switch
        // must refuse instead of reaching this machine's interfaces.
        QCOMPARE(qgetenv("TAVERO_KEEP_NETWORK"), QByteArray("1"));
        QVERIFY(!LinuxPlatform::chooseNetworkSwitchBackend());
        LinuxPlatform platform;
        const OperationResult result = platform.turnOffInternet();
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.message,
                 QStringLiteral("warning.could_not_connect_to_the_connection_manager_library"));
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
    }

    // --- adapters and injector ---------------------------------------------------------------

private:
    static QString configHome() { return qEnvironmentVariable("XDG_CONFIG_HOME"); }
};

TAVERO_TEST_GUILESS_MAIN(TestLinuxPlatform)
#include "tst_linuxplatform.moc"
