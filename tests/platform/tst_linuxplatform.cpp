#include "platform/linux/autostartentry.h"
#include "platform/linux/linuxplatform.h"
#include "platform/platformoverrides.h"
#include "support/testmain.h"

#include <memory>
#include <stdexcept>

using tavero::AutostartEntry;
using tavero::LinuxPlatform;
using tavero::NetworkConnection;
using tavero::NetworkSwitchStatus;
using tavero::PlatformOverrides;

namespace {

// A machine's connections as the fake switch sees them, shared by every backend made for it.
struct FakeNetwork {
    QMap<QString, bool> on; // id → switched on; listed in key order
    int openError = 0;
    int listError = 0;
    QStringList failing;           // ids whose switch reports an error (and does not happen)
    QStringList log;               // "off:ID", "on:ID" for every switch attempted
    QString stateFile;             // the platform's kill-switch state file
    QStringList onDiskAtSwitchOff; // ids that were in it when their switch-off came

    QStringList onIds() const { return on.keys(true); }
};

class FakeBackend : public tavero::NetworkSwitchBackend {
public:
    explicit FakeBackend(std::shared_ptr<FakeNetwork> network)
        : m_net(std::move(network))
    {}
    QString name() const override { return QStringLiteral("fake"); }
    NetworkSwitchStatus open() override
    {
        return m_net->openError ? NetworkSwitchStatus::failure(m_net->openError, "refused")
                                : NetworkSwitchStatus();
    }
    void close() override {}
    NetworkSwitchStatus listSwitchedOn(QVector<NetworkConnection>& connections) override
    {
        if (m_net->listError)
            return NetworkSwitchStatus::failure(m_net->listError, QStringLiteral("list"));
        for (const QString& id : m_net->onIds())
            connections.append({id, id, QString()});
        return {};
    }
    NetworkSwitchStatus stateOf(const QString& id, State& state) override
    {
        state = !m_net->on.contains(id) ? State::Missing : m_net->on[id] ? State::On : State::Off;
        return {};
    }
    NetworkSwitchStatus switchOff(const NetworkConnection& c) override { return flip(c.id, false); }
    NetworkSwitchStatus switchOn(const QString& id, const QJsonArray&) override
    {
        return flip(id, true);
    }

private:
    NetworkSwitchStatus flip(const QString& id, bool on)
    {
        m_net->log << (on ? "on:" : "off:") + id;
        QFile state(m_net->stateFile);
        if (!on && state.open(QIODevice::ReadOnly) && state.readAll().contains(id.toUtf8()))
            m_net->onDiskAtSwitchOff << id;
        if (m_net->failing.contains(id))
            return NetworkSwitchStatus::failure(5, QStringLiteral("denied"));
        m_net->on[id] = on;
        return {};
    }
    std::shared_ptr<FakeNetwork> m_net;
};

std::shared_ptr<FakeNetwork> network(const QStringList& onIds)
{
    auto net = std::make_shared<FakeNetwork>();
    for (const QString& id : onIds)
        net->on.insert(id, true);
    return net;
}

LinuxPlatform::Options optionsFor(const std::shared_ptr<FakeNetwork>& net)
{
    LinuxPlatform::Options options;
    options.networkBackendFactory = [net] { return std::make_unique<FakeBackend>(net); };
    return options;
}

LinuxPlatform::Options programAt(const QString& path)
{
    LinuxPlatform::Options options;
    options.programPath = path;
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

const QByteArray tcpHeader = "  sl  local_address rem_address   st tx_queue rx_queue ...\n";

} // namespace

class TestLinuxPlatform : public QObject {
    Q_OBJECT
private slots:
    void cleanup()
    {
        PlatformOverrides::setAdministrator(std::nullopt);
        PlatformOverrides::setRdpListening(std::nullopt);
        QDir(qEnvironmentVariable("XDG_CONFIG_HOME") + "/autostart").removeRecursively();
    }

    // Rows with `roundTrip` write the program as an Exec value and read it back; the others only
    // read an Exec value written by someone else.
    void execValueQuotesAndEscapes_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("exec");
        QTest::addColumn<bool>("roundTrip");
        const auto row = [](const char* name, const QString& program, const QString& exec,
                            bool roundTrip) {
            QTest::newRow(name) << program << exec << roundTrip;
        };
        row("blank", "/home/ann lee/tavero", "\"/home/ann lee/tavero\"", true);
        row("quote and dollar", "/opt/a\"b$c/t", "\"/opt/a\\\\\"b\\\\$c/t\"", true);
        row("backslash", "/opt/a\\b/t", "\"/opt/a\\\\\\\\b/t\"", true);
        row("arguments", "/usr/bin/tavero", "/usr/bin/tavero --hidden %U", false);
        row("escaped blank", "/a b/tavero", "\"/a\\sb/tavero\"", false);
        row("unterminated quote", "", "\"/a b/tavero", false);
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

    // Only an Exec line of the [Desktop Entry] group naming this program counts as ours.
    void runOnStartEntry_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("ours");
        QTest::newRow("ours with arguments")
            << QByteArray("[Desktop Entry]\nType=Application\nExec=/opt/t/tavero --min\n") << true;
        QTest::newRow("foreign program")
            << QByteArray("[Desktop Entry]\nExec=/usr/bin/x\n") << false;
        QTest::newRow("exec in another group")
            << QByteArray("[Desktop Entry]\nName=x\n[Desktop Action a]\nExec=/opt/t/tavero\n")
            << false;
        QTest::newRow("garbage") << QByteArray("\x01\x02 not an entry") << false;
    }
    void runOnStartEntry()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, ours);
        LinuxPlatform platform(programAt("/opt/t/tavero"));
        QVERIFY(tavero::test::TestEnvironment::writeFile(platform.autostartFilePath(), content));
        QCOMPARE(platform.isRunOnStart(), ours);

        platform.setRunOnStart(true);
        QVERIFY(platform.isRunOnStart());
        QVERIFY2(!LinuxPlatform(programAt("/usr/bin/tavero")).isRunOnStart(),
                 "an entry for another copy of the program is not ours");
        platform.setRunOnStart(false);
        QVERIFY(!QFileInfo::exists(platform.autostartFilePath()));
        platform.setRunOnStart(false); // removing twice is harmless
        QVERIFY(!platform.isRunOnStart());
    }

    void rdpListenerIsFoundInEitherTable_data()
    {
        QTest::addColumn<QByteArray>("tcp");
        QTest::addColumn<QByteArray>("tcp6");
        QTest::addColumn<bool>("listening");
        const QByteArray ssh =
            "   0: 00000000:0016 00000000:0000 0A 00000000:00000000 0:0 0 0 0 1\n";
        QTest::newRow("ipv4 listener")
            << tcpHeader + ssh + "   1: 0100007F:0D3D 00000000:0000 0A 0:0 0:0 0 0 0 2\n"
            << QByteArray() << true;
        QTest::newRow("ipv6 listener") << tcpHeader + ssh
                                       << tcpHeader + "   0: 00000000000000000000000000000000:0D3D "
                                                      "00000000000000000000000000000000:0000 0A 0\n"
                                       << true;
        QTest::newRow("established session")
            << tcpHeader + "   0: 0A00000F:0D3D 0A000001:C350 01 0:0 0:0 0 0 0 4\n"
            << QByteArray() << false;
        QTest::newRow("remote port") << tcpHeader + "   0: 0A00000F:C350 0A000001:0D3D 0A 0\n"
                                     << QByteArray() << false;
        QTest::newRow("garbage") << QByteArray("0A 0D3D\n::::\n\x01\x02") << QByteArray() << false;
    }
    void rdpListenerIsFoundInEitherTable()
    {
        QFETCH(QByteArray, tcp);
        QFETCH(QByteArray, tcp6);
        QFETCH(bool, listening);
        QTemporaryDir dir;
        QVERIFY(tavero::test::TestEnvironment::writeFile(dir.filePath("tcp"), tcp));
        QVERIFY(tavero::test::TestEnvironment::writeFile(dir.filePath("tcp6"), tcp6));
        QCOMPARE(LinuxPlatform::IsRdpListening(
                     {"/nonexistent/tcp", dir.filePath("tcp"), dir.filePath("tcp6")}),
                 listening);
        PlatformOverrides::setRdpListening(!listening);
        QCOMPARE(LinuxPlatform::IsRdpListening(), !listening);
    }

    void failuresTravelAsValues()
    {
        PlatformOverrides::setAdministrator(false);
        LinuxPlatform plain;
        QVERIFY(!plain.pptpSupports() && !plain.l2tpSupports());
        QVERIFY(plain.isPptpAsync() && plain.isL2tpAsync());
        QVERIFY(plain.disconnect().isSuccess);
        QCOMPARE(plain.connectPptp("h", "u", "p").message, "warning.cannot_open_pptp_connection");
        QCOMPARE(plain.connectL2tp("h", "u", "p", "k").message,
                 "warning.cannot_open_l2tp_connection");
        QCOMPARE(plain.connectIKEv2("h", "u", "p", true).message,
                 "warning.cannot_open_ikev2_connection");
        QCOMPARE(plain.connectIKEv2("h", "u", "p", false).message,
                 "warning.unable_to_connect_using_IKEv2_protocol"); // routes need rights

        // Exceptions escaping the workers become the operations' messages.
        PlatformOverrides::setAdministrator(true);
        ThrowingPlatform platform;
        bool reenabled = false;
        const QVector<QPair<OperationResult, QString>> results{
            {platform.disconnect(), "warning.could_not_break_vpn_connection"},
            {platform.connectPptp("h", "u", "p"), "warning.could_not_connect_using_pptp"},
            {platform.connectL2tp("h", "u", "p", "k"),
             "warning.unable_to_connect_using_L2TP_protocol"},
            {platform.connectIKEv2("h", "u", "p", false),
             "warning.unable_to_connect_using_IKEv2_protocol"},
            {platform.turnOffInternet(), "warning.internet_connection_failed"},
            {platform.turnOnInternet(reenabled), "warning.internet_shutdown_failed"}};
        for (const auto& [result, message] : results) {
            QVERIFY(!result.isSuccess);
            QCOMPARE(result.message, message);
        }
        QVERIFY2(!platform.turnOnNetDevices(), "an escaped exception means nothing came back");
    }

    // Nothing is switched and nothing remembered when the manager cannot be reached or listed;
    // tests themselves never get a switch for the host (TAVERO_KEEP_NETWORK=1).
    void refusedSwitchOffTouchesNothing_data()
    {
        QTest::addColumn<int>("openError");
        QTest::addColumn<int>("listError");
        QTest::addColumn<bool>("hostSwitch");
        QTest::addColumn<QString>("message");
        QTest::newRow("listing fails")
            << 0 << -33 << false << "warning.failed_to_turn_off_the_internet";
        QTest::newRow("manager unreachable")
            << -12 << 0 << false << "warning.could_not_connect_to_the_connection_manager_library";
        QTest::newRow("host network kept")
            << 0 << 0 << true << "warning.could_not_connect_to_the_connection_manager_library";
    }
    void refusedSwitchOffTouchesNothing()
    {
        QFETCH(int, openError);
        QFETCH(int, listError);
        QFETCH(bool, hostSwitch);
        QFETCH(QString, message);
        auto net = network({"eth0"});
        net->openError = openError;
        net->listError = listError;
        QCOMPARE(qgetenv("TAVERO_KEEP_NETWORK"), QByteArray("1"));
        QVERIFY(!LinuxPlatform::chooseNetworkSwitchBackend());
        LinuxPlatform platform(hostSwitch ? LinuxPlatform::Options() : optionsFor(net));
        const OperationResult off = platform.turnOffInternet();
        QCOMPARE(off.message, message);
        bool reenabled = true;
        QVERIFY(!platform.turnOnInternet(reenabled).isSuccess);
        QVERIFY(!off.isSuccess && !reenabled);
        QVERIFY(net->log.isEmpty());
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
    }

    // What the kill switch switches off is on disk (for the user alone) before it is switched, a
    // failed switch included: a run that dies while the network is cut leaves it to the next
    // start, which switches on only what is still off and there; what fails to come back stays
    // on disk for the start after.
    void switchedOffConnectionsSurviveTheProcess()
    {
        QTemporaryDir dir;
        auto net = network({"eth0", "tun0", "wlan0"});
        net->failing = QStringList{"wlan0"}; // the last switch decides the result
        LinuxPlatform::Options options = optionsFor(net);
        options.killSwitchStateFile = net->stateFile = dir.filePath("state/killswitch.json");
        {
            LinuxPlatform killed(options);
            QVERIFY(!killed.turnOffInternet().isSuccess);
        } // switches nothing on when it goes, as a killed process would not
        QCOMPARE(net->onDiskAtSwitchOff, QStringList({"eth0", "tun0", "wlan0"}));
        const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
        QVERIFY(!(QFile(options.killSwitchStateFile).permissions() & others));

        net->on["eth0"] = true;  // brought back by the user
        net->on.remove("wlan0"); // deleted by the user
        net->failing = QStringList{"tun0"};
        net->log.clear();
        bool reenabled = false;
        LinuxPlatform(options).turnOnInternet(reenabled);
        QCOMPARE(net->log, QStringList{"on:tun0"});
        net->failing.clear();
        LinuxPlatform last(options);
        QCOMPARE(last.rememberedConnections(), QStringList{"tun0"});
        QVERIFY(last.turnOnInternet(reenabled).isSuccess);
        QCOMPARE(net->onIds(), QStringList({"eth0", "tun0"}));
        QVERIFY(!QFile::exists(options.killSwitchStateFile));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestLinuxPlatform)
#include "tst_linuxplatform.moc"
