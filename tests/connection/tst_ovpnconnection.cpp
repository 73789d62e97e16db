#include "api/vpnserverinformation.h"
#include "connection/ovpnconnection.h"
#include "connection/runtimedirectory.h"
#include "support/fakeserverapi.h"
#include "support/standinlog.h"
#include "support/testmain.h"

#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>

using tavero::OvpnConnection;
using tavero::RuntimeDirectory;
using namespace std::chrono_literals;

namespace {

QString pem(const QString& label, char fill)
{
    return QStringLiteral("-----BEGIN %1-----\n%2\n-----END %1-----")
        .arg(label, QString::fromLatin1(QByteArray(48, fill).toBase64()));
}

const QString caText = pem(QStringLiteral("CERTIFICATE"), 'a');
const QString certText = pem(QStringLiteral("CERTIFICATE"), 'b');
const QString keyText = pem(QStringLiteral("PRIVATE KEY"), 'c');

// Quick limits, so time-outs take a second instead of twenty; elapsed time counted in ms.
OvpnConnection::Limits quickLimits(std::chrono::milliseconds connectLimit = 4000ms,
                                   std::chrono::milliseconds silenceLimit = 3000ms)
{
    OvpnConnection::Limits limits;
    limits.connectLimit = connectLimit;
    limits.silenceLimit = silenceLimit;
    limits.wait = 50ms;
    limits.slice = 10ms;
    limits.tick = 1ms;
    return limits;
}

VpnServerInformation server(const QString& host = QStringLiteral("vpn.example.net"))
{
    VpnServerInformation record;
    record.name = QStringLiteral("nl-1");
    record.host = host;
    record.hasOvpnConfig = true;
    return record;
}

void setScenario(const QString& scenario)
{
    qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", scenario.toUtf8());
}

// A program directory whose "openvpn" is the stand-in, with a record of every start of it.
class StandIn : public tavero::test::StandInLog {
public:
    explicit StandIn(const QString& scenario = QStringLiteral("success"))
    {
        QFile::link(qEnvironmentVariable("TAVERO_FAKE_OPENVPN"), binDir() + "/openvpn");
        setScenario(scenario);
    }
    ~StandIn() { qunsetenv("TAVERO_FAKE_OPENVPN_SCENARIO"); }

    QString binDir() const { return m_bin.path(); }
    bool anyAlive() const { return !live().isEmpty(); }

private:
    QTemporaryDir m_bin;
};

QString generated(OvpnConnection::ConnectionType type,
                  const QString& host = QStringLiteral("vpn.example.net"))
{
    tavero::test::FakeServerApi api;
    QString text;
    OvpnConnection(api).generateConfigText(type, host, caText, certText, keyText, text);
    return text;
}

// Entries of this test program in the private runtime directory.
QStringList ownEntries()
{
    return QDir(RuntimeDirectory::path()).entryList({RuntimeDirectory::ownerTag() + "-*"});
}

} // namespace

class TestOvpnConnection : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        // A runtime directory of our own, so another run's entries never count as ours.
        QVERIFY(m_runtimeDir.isValid());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtimeDir.path()));
        QVERIFY2(QFileInfo(qEnvironmentVariable("TAVERO_FAKE_OPENVPN")).isExecutable(),
                 "TAVERO_FAKE_OPENVPN must name the built stand-in");
        // The real English catalogue, so the texts below are what users read.
        QVERIFY(m_english.load(QStringLiteral(":/translations/eng")));
        QCoreApplication::installTranslator(&m_english);
    }

    void init()
    {
        m_api = std::make_unique<tavero::test::FakeServerApi>();
        m_api->accountInfo.status = 0;
        m_api->accountInfo.caCertificate = caText;
        m_api->accountInfo.publicKey = certText;
        m_api->accountInfo.privateKey = keyText;
    }

    void cleanup()
    {
        // Whatever a test did, no configuration file and no process record may stay behind.
        QCOMPARE(ownEntries(), QStringList());
    }

    void outputClassification()
    {
        // 0: the tunnel is up, 1: failure, 2: keep waiting. The markers are case-sensitive.
        const QVector<QPair<QString, int>> cases = {
            {"", 2},
            {"OpenVPN 2.6.14\nUDPv4 link local: (not bound)\n", 2},
            {"tun0 opened\nInitialization Sequence Completed\n", 0},
            {"ERROR: something\nInitialization Sequence Completed", 0},
            {"ERROR: Cannot ioctl TUNSETIFF tun: Operation not permitted", 1},
            {"connect to 10.0.0.1 failed, will try again in 5 s", 1},
            {"ERROR: route add command failed: ipv6 command failed", 2},
            {"failed, will try again in 5 seconds\nipv6 command failed", 2},
            {"Options error: something", 2},
            {"initialization sequence completed", 2}};
        for (const auto& [output, verdict] : cases)
            QVERIFY2(OvpnConnection::analyseProcessOutput(output) == verdict, qPrintable(output));
    }

    void successLeavesTunnelRunningAndFileGone_data()
    {
        QTest::addColumn<bool>("tcp"); // else: a udp text with "verb 0" and "compress lzo"
        QTest::newRow("tcp") << true;
        QTest::newRow("udp, verb 0 and compress lzo rewritten") << false;
    }
    void successLeavesTunnelRunningAndFileGone()
    {
        QFETCH(bool, tcp);
        StandIn standIn;
        const QString currentDirectory = QDir::currentPath();
        auto connection = std::make_unique<OvpnConnection>(*m_api, standIn.binDir(), quickLimits());
        QString expected = generated(tcp ? OvpnConnection::Tcp : OvpnConnection::Udp);
        const QString input = QString(expected).replace("verb 1\n", "verb 0\ncompress lzo\n");
        expected.replace("verb 1\n", tcp ? "verb 1\n" : "verb 1\ncomp-lzo\n");
        const OperationResult result = tcp ? connection->connectTcp(server())
                                           : connection->connect(input, QStringLiteral("UDP"));
        QVERIFY2(result.isSuccess, qPrintable(result.message));
        QCOMPARE(connection->process()->state(), QProcess::Running);
        QVERIFY(connection->configFilePath().isEmpty());

        QCOMPARE(standIn.starts().size(), 1);
        const QJsonObject start = standIn.starts().first().entry;
        const qint64 pid = connection->process()->processId();
        QCOMPARE(standIn.starts().first().pid, pid);
        QCOMPARE(start["text"].toString(), expected);
        // Owner-only file in the owner-only runtime directory, gone once OpenVPN has read it.
        QCOMPARE(start["mode"].toString(), QStringLiteral("600"));
        const QFileInfo file(start["config"].toString());
        QCOMPARE(file.absolutePath(), m_runtimeDir.path() + "/tavero");
        const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QCOMPARE(QFileInfo(file.absolutePath()).permissions() & others, QFile::Permissions());
        QVERIFY(!file.exists());
        // The running process is on record until it ends.
        QCOMPARE(ownEntries(), QStringList(file.completeBaseName().section('-', 0, 2) +
                                           QStringLiteral("-%1.pid").arg(pid)));
        // Started from the program directory, without moving this process's current directory.
        QCOMPARE(QFileInfo(start["cwd"].toString()).canonicalFilePath(),
                 QFileInfo(standIn.binDir()).canonicalFilePath());
        QCOMPARE(QDir::currentPath(), currentDirectory);

        // A new attempt ends the previous process; the destructor ends the last one without
        // processing events (its owner is being torn down).
        QVERIFY(connection->connectUdp(server()).isSuccess);
        QVERIFY(!StandIn::isRunning(pid));
        bool eventRan = false;
        QObject scope; // the pending event must not outlive this test
        QTimer::singleShot(0, &scope, [&] { eventRan = true; });
        connection.reset();
        QVERIFY(!eventRan);
        QVERIFY(!StandIn::isRunning(standIn.starts().value(1).pid));
    }

    // Every failed attempt ends with no process and no file; an OpenVPN that exits at once is
    // restarted after growing pauses, not in a tight loop.
    void runOutcomes_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<bool>("tcp");
        QTest::addColumn<int>("connectLimit");
        QTest::addColumn<int>("silenceLimit");
        QTest::addColumn<QString>("message"); // empty: success
        QTest::addColumn<int>("maxStarts");
        QTest::newRow("ipv6 error keeps waiting")
            << "ipv6-error:0.5" << false << 4000 << 3000 << "" << 1;
        // First lines at once, the marker only well after the silence limit.
        QTest::newRow("talking may outlast the silence limit")
            << "slow-start:1.5" << false << 4000 << 600 << "" << 1;
        QTest::newRow("silence") << "silence" << false << 4000 << 400
                                 << "OpenVPN server does not respond" << 1;
        QTest::newRow("reported error, no retry")
            << "error" << true << 4000 << 3000
            << "Unable to create Open VPN connection. Check premissions. The program must be open "
               "as an administrator"
            << 1;
        QTest::newRow("run longer than the limit")
            << "slow-start:60" << true << 600 << 3000 << "Connection timeout for Open VPN TCP" << 1;
        // Pauses of 50, 100, 200, 400, 400 ... ms fit at most eight restarts into 2.5 s.
        QTest::newRow("exits at once, udp")
            << "exit" << false << 2500 << 3000 << "Connection timeout for Open VPN UDP" << 9;
        // No certificates: OpenVPN refuses the file and exits, run after run.
        QTest::newRow("account fetch failed")
            << "" << false << 1500 << 3000 << "Connection timeout for Open VPN UDP" << 6;
    }
    void runOutcomes()
    {
        QFETCH(QString, scenario);
        QFETCH(bool, tcp);
        QFETCH(int, connectLimit);
        QFETCH(int, silenceLimit);
        QFETCH(QString, message);
        QFETCH(int, maxStarts);
        if (scenario.isEmpty()) {
            m_api->accountInfo = AccountInfoGettingResult();
            m_api->accountInfo.status = 2;
        }
        StandIn standIn(scenario);
        OvpnConnection connection(*m_api, standIn.binDir(),
                                  quickLimits(std::chrono::milliseconds(connectLimit),
                                              std::chrono::milliseconds(silenceLimit)));
        const OperationResult result =
            tcp ? connection.connectTcp(server()) : connection.connectUdp(server());
        QCOMPARE(result.message, message);
        QCOMPARE(result.isSuccess, message.isEmpty());
        const QVector<StandIn::Start> starts = standIn.starts();
        QVERIFY2(starts.size() >= (maxStarts > 1 ? 3 : 1) && starts.size() <= maxStarts,
                 qPrintable(QString::number(starts.size())));
        QSet<QString> paths;
        for (const StandIn::Start& start : starts) {
            paths << start.config;
            QVERIFY(!QFile::exists(start.config));
        }
        QCOMPARE(paths.size(), starts.size()); // a fresh file for every run
        if (scenario.isEmpty())
            QVERIFY(starts.first().entry["text"].toString().contains("<ca>\n\n</ca>"));
        if (!result.isSuccess) {
            QVERIFY(!connection.process());
            QVERIFY(!standIn.anyAlive());
        }
        connection.disconnect();
    }

    void unusableProgramIsReported()
    {
        QTemporaryDir dir;
        QFile program(dir.path() + "/openvpn"); // not executable
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.close();
        for (const QString& directory : {dir.path(), dir.path() + "/missing"})
            QCOMPARE(OvpnConnection(*m_api, directory, quickLimits()).connectUdp(server()).message,
                     QStringLiteral("Unable to run Open VPN connection process. Please check the "
                                    "installed software"));
    }

    // The checks themselves are tested in tst_ovpninputcheck; here: nothing is written or run.
    void hostileDataIsRefused_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("key");
        QTest::newRow("host with a directive") << "vpn.example.net 1194\nup /bin/sh" << keyText;
        QTest::newRow("key with a trailing line")
            << "vpn.example.net" << keyText + "\nplugin /tmp/evil.so";
    }
    void hostileDataIsRefused()
    {
        QFETCH(QString, host);
        QFETCH(QString, key);
        m_api->accountInfo.privateKey = key;
        StandIn standIn;
        OvpnConnection connection(*m_api, standIn.binDir(), quickLimits());
        const OperationResult result = connection.connectUdp(server(host));
        QCOMPARE(result.message, QStringLiteral("The server's connection data were rejected as "
                                                "unsafe. Try another server or contact support"));
        QCOMPARE(m_api->calls("receiveAccountInfo"), 1);
        QVERIFY(standIn.starts().isEmpty());
        QVERIFY(!connection.process());
    }

    // A connect or disconnect delivered through the event processing of another one: the later
    // request wins, the earlier one returns without touching what the later one started.
    void reentryThroughNestedLoops_data()
    {
        QTest::addColumn<bool>("outerConnects"); // else: the outer call disconnects a tunnel
        QTest::addColumn<bool>("innerConnects");
        QTest::addColumn<QString>("innerScenario");
        QTest::addColumn<bool>("tunnelAfter");
        QTest::newRow("connect while disconnecting") << false << true << "success" << true;
        QTest::newRow("failing connect while disconnecting") << false << true << "exit" << false;
        QTest::newRow("disconnect while connecting") << true << false << "" << false;
        QTest::newRow("connect while connecting") << true << true << "success" << true;
    }
    void reentryThroughNestedLoops()
    {
        QFETCH(bool, outerConnects);
        QFETCH(bool, innerConnects);
        QFETCH(QString, innerScenario);
        QFETCH(bool, tunnelAfter);
        StandIn standIn(outerConnects ? "silence" : "success");
        OvpnConnection connection(*m_api, standIn.binDir(), quickLimits(600ms, 3000ms));
        if (!outerConnects)
            QVERIFY(connection.connectUdp(server()).isSuccess);

        OperationResult inner;
        bool innerRan = false;
        QTimer::singleShot(0, [&] {
            innerRan = true;
            setScenario(innerScenario);
            inner = innerConnects ? connection.connectUdp(server()) : connection.disconnect();
        });
        const OperationResult outer =
            outerConnects ? connection.connectUdp(server()) : connection.disconnect();

        QVERIFY(innerRan);
        QCOMPARE(inner.isSuccess, tunnelAfter || !innerConnects);
        QCOMPARE(outer.isSuccess, !outerConnects);
        QCOMPARE(bool(connection.process()), tunnelAfter);
        // A record goes only once its process has ended: only the tunnel's may remain.
        QCOMPARE(ownEntries().size(), tunnelAfter ? 1 : 0);
        if (tunnelAfter)
            QCOMPARE(connection.process()->state(), QProcess::Running);
        QVERIFY(connection.configFilePath().isEmpty());
        connection.disconnect();
        QVERIFY(!standIn.anyAlive());
    }

    // What a client killed mid-connect leaves: a running openvpn on record and its file.
    void leftoversOfAnEndedClientAreStopped()
    {
        StandIn standIn(QStringLiteral("silence"));
        const QString directory = RuntimeDirectory::path();
        // Our own pid with another start time: the owner that wrote these entries has ended.
        const QString gone = QStringLiteral("%1-1-0").arg(QCoreApplication::applicationPid());
        const auto write = [&](const QString& name, const QByteArray& content) {
            QFile file(directory + "/" + name);
            return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        };
        const QString config = directory + "/" + gone + "-abcdef.conf";
        QVERIFY(write(gone + "-abcdef.conf", generated(OvpnConnection::Udp).toLatin1()));
        QProcess orphan;
        orphan.start(standIn.binDir() + "/openvpn", {"--config", config});
        QVERIFY(orphan.waitForStarted());
        QTRY_COMPARE(standIn.starts().size(), 1); // it has read its file
        QVERIFY(write(gone + "-" + QString::number(orphan.processId()) + ".pid",
                      QByteArray::number(orphan.processId()) + "\n" + QFile::encodeName(config)));
        // A recorded pid that now belongs to an unrelated program.
        QProcess unrelated;
        unrelated.start("sleep", {"30"});
        QVERIFY(unrelated.waitForStarted());
        QVERIFY(write(gone + "-" + QString::number(unrelated.processId()) + ".pid",
                      QByteArray::number(unrelated.processId()) + "\n" +
                          QFile::encodeName(directory + "/" + gone + "-other.conf")));
        // An entry of an owner that still runs (this test).
        const QString live = RuntimeDirectory::ownerTag() + "-9-live.conf";
        QVERIFY(write(live, "live"));

        QCOMPARE(RuntimeDirectory::removeLeftovers(), 1);
        QVERIFY(orphan.waitForFinished(5000));
        QCOMPARE(orphan.exitStatus(), QProcess::CrashExit);
        QCOMPARE(unrelated.state(), QProcess::Running);
        QCOMPARE(QDir(directory).entryList(QDir::Files), QStringList{live});
        QVERIFY(QFile::remove(directory + "/" + live));
        unrelated.kill();
        unrelated.waitForFinished();
    }

private:
    QTemporaryDir m_runtimeDir;
    QTranslator m_english;
    std::unique_ptr<tavero::test::FakeServerApi> m_api;
};

TAVERO_TEST_GUILESS_MAIN(TestOvpnConnection)
#include "tst_ovpnconnection.moc"
