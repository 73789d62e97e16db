#include "api/vpnserverinformation.h"
#include "connection/ovpnconnection.h"
#include "support/fakeserverapi.h"
#include "support/testmain.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>
#include <csignal>
#include <sys/types.h>

using tavero::OvpnConnection;
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

bool processAlive(qint64 pid)
{
    return pid > 0 && ::kill(pid_t(pid), 0) == 0;
}

// Quick limits, so time-outs take a second instead of twenty; elapsed time counted in ms.
OvpnConnection::Limits quickLimits()
{
    OvpnConnection::Limits limits;
    limits.connectLimit = 4000ms;
    limits.silenceLimit = 3000ms;
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

// A program directory whose "openvpn" is the stand-in, with a record of every start of it.
class StandIn {
public:
    explicit StandIn(const QString& scenario = QStringLiteral("success"))
    {
        QDir(m_dir.path()).mkpath(QStringLiteral("bin"));
        QFile::link(qEnvironmentVariable("TAVERO_FAKE_OPENVPN"), binDir() + "/openvpn");
        qputenv("TAVERO_FAKE_OPENVPN_LOG", QFile::encodeName(m_dir.path() + "/starts.log"));
        qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", scenario.toUtf8());
        qunsetenv("TAVERO_FAKE_OPENVPN_TUNNEL");
    }
    ~StandIn()
    {
        qunsetenv("TAVERO_FAKE_OPENVPN_LOG");
        qunsetenv("TAVERO_FAKE_OPENVPN_SCENARIO");
        qunsetenv("TAVERO_FAKE_OPENVPN_TUNNEL");
    }

    QString binDir() const { return m_dir.path() + "/bin"; }

    // One object per start: pid, cwd, config (path), mode (octal text), text.
    QVector<QJsonObject> starts() const
    {
        QVector<QJsonObject> entries;
        QFile log(m_dir.path() + "/starts.log");
        if (log.open(QIODevice::ReadOnly)) {
            for (const QByteArray& line : log.readAll().split('\n')) {
                if (!line.isEmpty()) {
                    entries << QJsonDocument::fromJson(line).object();
                }
            }
        }
        return entries;
    }

private:
    QTemporaryDir m_dir;
};

QString generated(OvpnConnection& connection, OvpnConnection::ConnectionType type,
                  const QString& host = QStringLiteral("vpn.example.net"))
{
    QString text;
    connection.generateConfigText(type, host, caText, certText, keyText, text);
    return text;
}

// Configuration files this test program left in the temporary directory.
QStringList leftoverConfigFiles()
{
    return QDir(QDir::tempPath())
        .entryList({QCoreApplication::applicationName() + ".*"}, QDir::Files);
}

} // namespace

class TestOvpnConnection : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        // A temporary directory of our own, so other programs' files never count as leftovers.
        QVERIFY(m_tempDir.isValid());
        qputenv("TMPDIR", QFile::encodeName(m_tempDir.path()));
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
        m_leftovers = leftoverConfigFiles();
    }

    void cleanup()
    {
        // Whatever a test did, no configuration file may stay behind.
        QCOMPARE(leftoverConfigFiles(), m_leftovers);
    }

    // --- the configuration text -------------------------------------------------------------

    void templatesByteForByte_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("expected");
        const QString head = "client \n"
                             "dev tun \n"
                             "proto %1\n"
                             "remote host.example 1194\n"
                             "resolv-retry infinite\n"
                             "nobind\n"
                             "persist-key\n"
                             "persist-tun\n"
                             "remote-cert-tls server\n"
                             "comp-lzo\n"
                             "verb 1\n";
        const QString udpOnly = "tun-mtu 1500\n"
                                "tun-mtu-extra 32\n"
                                "mssfix 1450\n"
                                "ping 15\n"
                                "ping-restart 0\n"
                                "ping-timer-rem\n"
                                "reneg-sec 0\n"
                                "comp-lzo no\n"
                                "pull\n"
                                "fast-io\n"
                                "cipher AES-256-CBC\n";
        const QString blocks = "\n<ca>\nCA %2 %1\n</ca>\n"
                               "\n<cert>\nCERT %3%%4\n</cert>\n"
                               "\n<key>\nKEY %5 %9\n</key>\n";
        QTest::newRow("udp") << int(OvpnConnection::Udp)
                             << QString(head).replace("%1", "udp") + udpOnly + blocks;
        QTest::newRow("tcp") << int(OvpnConnection::Tcp)
                             << QString(head).replace("%1", "tcp") + blocks;
    }
    void templatesByteForByte()
    {
        QFETCH(int, type);
        QFETCH(QString, expected);
        OvpnConnection connection(*m_api, QStringLiteral("/nonexistent"), quickLimits());
        QString out = QStringLiteral("previous content");
        // Placeholders inside the values must stay literal: one-pass substitution.
        const OperationResult result = connection.generateConfigText(
            OvpnConnection::ConnectionType(type), QStringLiteral("host.example"),
            QStringLiteral("CA %2 %1"), QStringLiteral("CERT %3%%4"), QStringLiteral("KEY %5 %9"),
            out);
        QVERIFY(result.isSuccess);
        QCOMPARE(out.toLatin1(), expected.toLatin1());
    }

    void connectionTypeText()
    {
        QCOMPARE(OvpnConnection::generateConnectionTypeString(OvpnConnection::Tcp),
                 QStringLiteral("TCP"));
        QCOMPARE(OvpnConnection::generateConnectionTypeString(OvpnConnection::Udp),
                 QStringLiteral("UDP"));
        QCOMPARE(OvpnConnection::generateConnectionTypeString(OvpnConnection::ConnectionType(7)),
                 QStringLiteral("UDP"));
    }

    void outputClassification_data()
    {
        QTest::addColumn<QString>("output");
        QTest::addColumn<int>("verdict");
        QTest::newRow("nothing yet") << "" << 2;
        QTest::newRow("start-up lines") << "OpenVPN 2.6.14\nUDPv4 link local: (not bound)\n" << 2;
        QTest::newRow("success")
            << "TUN/TAP device tun0 opened\nInitialization Sequence Completed\n"
            << 0;
        QTest::newRow("success wins over an error")
            << "ERROR: something\nInitialization Sequence Completed" << 0;
        QTest::newRow("error") << "ERROR: Cannot ioctl TUNSETIFF tun: Operation not permitted" << 1;
        QTest::newRow("will try again")
            << "TCP: connect to [AF_INET]10.0.0.1:1194 failed, will try again in 5 seconds" << 1;
        QTest::newRow("ipv6 error only")
            << "ERROR: Linux route add command failed: ipv6 command failed" << 2;
        QTest::newRow("retry with ipv6 error")
            << "failed, will try again in 5 seconds\nipv6 command failed" << 2;
        QTest::newRow("lower-case error") << "Options error: something" << 2;
        QTest::newRow("marker in lower case") << "initialization sequence completed" << 2;
    }
    void outputClassification()
    {
        QFETCH(QString, output);
        QFETCH(int, verdict);
        QCOMPARE(OvpnConnection::analyseProcessOutput(output), verdict);
    }

    // --- runs of the stand-in ---------------------------------------------------------------

    void successLeavesTunnelRunningAndFileGone_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("udp") << int(OvpnConnection::Udp);
        QTest::newRow("tcp") << int(OvpnConnection::Tcp);
    }
    void successLeavesTunnelRunningAndFileGone()
    {
        QFETCH(int, type);
        StandIn standIn;
        const QString currentDirectory = QDir::currentPath();
        OvpnConnection connection(*m_api, standIn.binDir(), quickLimits());

        const OperationResult result = type == OvpnConnection::Udp
                                           ? connection.connectUdp(server())
                                           : connection.connectTcp(server());
        QVERIFY2(result.isSuccess, qPrintable(result.message));
        QCOMPARE(m_api->calls("receiveAccountInfo"), 1);
        QVERIFY(connection.process());
        QCOMPARE(connection.process()->state(), QProcess::Running);
        QVERIFY(connection.configFilePath().isEmpty());

        const QVector<QJsonObject> starts = standIn.starts();
        QCOMPARE(starts.size(), 1);
        const QJsonObject start = starts.first();
        QCOMPARE(qint64(start["pid"].toDouble()), connection.process()->processId());
        QCOMPARE(start["text"].toString(),
                 generated(connection, OvpnConnection::ConnectionType(type)));
        QCOMPARE(start["mode"].toString(), QStringLiteral("600"));
        const QFileInfo file(start["config"].toString());
        QCOMPARE(file.absolutePath(), QFileInfo(QDir::tempPath()).absoluteFilePath());
        QVERIFY(file.fileName().startsWith(QCoreApplication::applicationName() + "."));
        QVERIFY(!file.exists());
        // Started from the program directory, without moving this process's current directory.
        QCOMPARE(QFileInfo(start["cwd"].toString()).canonicalFilePath(),
                 QFileInfo(standIn.binDir()).canonicalFilePath());
        QCOMPARE(QDir::currentPath(), currentDirectory);

        const qint64 pid = connection.process()->processId();
        QVERIFY(connection.disconnect().isSuccess);
        QVERIFY(!connection.process());
        QVERIFY(!processAlive(pid));
        QVERIFY(connection.disconnect().isSuccess); // a second time is harmless
    }

    void verbAndCompressionAreRewritten()
    {
        StandIn standIn;
        OvpnConnection connection(*m_api, standIn.binDir(), quickLimits());
        QString input = generated(connection, OvpnConnection::Udp);
        QString expected = input;
        input.replace("verb 1\n", "verb 0\ncompress lzo\n");
        expected.replace("verb 1\n", "verb 1\ncomp-lzo\n");

        const OperationResult result = connection.connect(input, QStringLiteral("UDP"));
        QVERIFY2(result.isSuccess, qPrintable(result.message));
        QCOMPARE(standIn.starts().size(), 1);
        QCOMPARE(standIn.starts().first()["text"].toString(), expected);
    }

    void silenceGivesNoResponseWhileEventsRun()
    {
        StandIn standIn(QStringLiteral("silence"));
        OvpnConnection::Limits limits = quickLimits();
        limits.silenceLimit = 400ms;
        OvpnConnection connection(*m_api, standIn.binDir(), limits);

        // Runs during the driver's wait (the event loop must keep turning): the file OpenVPN
        // reads exists then, and only its owner may read it.
        QString pathDuringRun;
        bool existedDuringRun = false;
        QFile::Permissions permissions;
        QTimer::singleShot(150, [&] {
            pathDuringRun = connection.configFilePath();
            existedDuringRun = QFile::exists(pathDuringRun);
            permissions = QFileInfo(pathDuringRun).permissions();
        });

        const OperationResult result = connection.connectUdp(server());
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.code, OperationResult::General);
        QCOMPARE(result.message, QStringLiteral("OpenVPN server does not respond"));
        QVERIFY(!pathDuringRun.isEmpty());
        QVERIFY(existedDuringRun);
        QVERIFY(permissions & QFile::ReadOwner);
        QCOMPARE(permissions & (QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                QFile::ReadOther | QFile::WriteOther | QFile::ExeOther),
                 QFile::Permissions());
        QVERIFY(!QFile::exists(pathDuringRun));
        QVERIFY(connection.configFilePath().isEmpty());
        // A failed run leaves its process to the next attempt or to disconnect().
        QVERIFY(connection.process());
        QCOMPARE(connection.process()->state(), QProcess::Running);
        QCOMPARE(standIn.starts().size(), 1);
    }

    // One run of the stand-in per row: an empty message means the connect succeeds.
    void singleRunOutcomes_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<bool>("tcp");
        QTest::addColumn<int>("connectLimit");
        QTest::addColumn<int>("silenceLimit");
        QTest::addColumn<QString>("message");
        // The IPv6 error comes several reads before the success marker.
        QTest::newRow("ipv6 error keeps waiting")
            << "ipv6-error:0.5" << false << 4000 << 3000 << "";
        // Prints its first lines at once and the marker only well after the silence limit.
        QTest::newRow("talking may outlast the silence limit")
            << "slow-start:1.5" << false << 4000 << 600 << "";
        QTest::newRow("reported error, no retry")
            << "error" << true << 4000 << 3000
            << "Unable to create Open VPN connection. Check premissions. The program must be open "
               "as an administrator";
        // Talks at once, but never reaches the marker.
        QTest::newRow("run longer than the limit")
            << "slow-start:60" << true << 600 << 3000 << "Connection timeout for Open VPN TCP";
    }
    void singleRunOutcomes()
    {
        QFETCH(QString, scenario);
        QFETCH(bool, tcp);
        QFETCH(int, connectLimit);
        QFETCH(int, silenceLimit);
        QFETCH(QString, message);
        StandIn standIn(scenario);
        OvpnConnection::Limits limits = quickLimits();
        limits.connectLimit = std::chrono::milliseconds(connectLimit);
        limits.silenceLimit = std::chrono::milliseconds(silenceLimit);
        OvpnConnection connection(*m_api, standIn.binDir(), limits);
        const OperationResult result =
            tcp ? connection.connectTcp(server()) : connection.connectUdp(server());
        QCOMPARE(result.isSuccess, message.isEmpty());
        if (!message.isEmpty())
            QCOMPARE(result.message, message);
        QCOMPARE(standIn.starts().size(), 1);
        if (message.startsWith(QLatin1String("Connection timeout")))
            QVERIFY(!connection.process()); // the time-out disconnects
    }

    void exitingOpenVpnIsRestartedUntilTimeOut_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("message");
        QTest::newRow("udp") << int(OvpnConnection::Udp) << "Connection timeout for Open VPN UDP";
        QTest::newRow("tcp") << int(OvpnConnection::Tcp) << "Connection timeout for Open VPN TCP";
    }
    void exitingOpenVpnIsRestartedUntilTimeOut()
    {
        QFETCH(int, type);
        QFETCH(QString, message);
        StandIn standIn(QStringLiteral("exit"));
        OvpnConnection::Limits limits = quickLimits();
        limits.connectLimit = 1500ms;
        OvpnConnection connection(*m_api, standIn.binDir(), limits);

        const OperationResult result =
            connection.connect(server(), OvpnConnection::ConnectionType(type));
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.message, message);

        const QVector<QJsonObject> starts = standIn.starts();
        QVERIFY2(starts.size() >= 3, qPrintable(QString::number(starts.size())));
        QSet<QString> paths;
        for (const QJsonObject& start : starts) {
            paths << start["config"].toString();
            QCOMPARE(start["text"].toString(),
                     generated(connection, OvpnConnection::ConnectionType(type)));
            QVERIFY(!QFile::exists(start["config"].toString()));
        }
        QCOMPARE(paths.size(), starts.size()); // a fresh file for every run
        QVERIFY(!connection.process());        // the time-out disconnects
    }

    void unusableProgramIsReported_data()
    {
        QTest::addColumn<QString>("what");
        QTest::newRow("missing") << "missing";
        QTest::newRow("not executable") << "plain file";
        QTest::newRow("no program directory") << "no directory";
    }
    void unusableProgramIsReported()
    {
        QFETCH(QString, what);
        QTemporaryDir dir;
        QString programDirectory = dir.path();
        if (what == "plain file") {
            QFile program(dir.path() + "/openvpn");
            QVERIFY(program.open(QIODevice::WriteOnly));
            program.write("#!/bin/sh\necho Initialization Sequence Completed\nsleep 60\n");
        } else if (what == "no directory") {
            programDirectory = dir.path() + "/bin";
        }
        OvpnConnection connection(*m_api, programDirectory, quickLimits());
        QCOMPARE(connection.programPath(), programDirectory + "/openvpn");
        const OperationResult result = connection.connectUdp(server());
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.message, QStringLiteral("Unable to run Open VPN connection process. "
                                                "Please check the installed software"));
        QVERIFY(connection.configFilePath().isEmpty());
    }

    void defaultProgramDirectoryIsBinBesideTheExecutable()
    {
        OvpnConnection connection(*m_api);
        QCOMPARE(connection.programPath(), QCoreApplication::applicationDirPath() + "/bin/openvpn");
    }

    void processEndsWithEachNewAttemptAndWithTheDriver()
    {
        StandIn standIn;
        qint64 second = 0;
        {
            OvpnConnection connection(*m_api, standIn.binDir(), quickLimits());
            QVERIFY(connection.disconnect().isSuccess); // with nothing running
            QVERIFY(!connection.process());
            QVERIFY(standIn.starts().isEmpty());
            QVERIFY(connection.connectUdp(server()).isSuccess);
            const qint64 first = connection.process()->processId();
            QVERIFY(connection.connectTcp(server()).isSuccess);
            QVERIFY(!processAlive(first));
            second = connection.process()->processId();
            QVERIFY(processAlive(second));
        }
        QVERIFY(!processAlive(second));
    }

    void hostileDataIsRefused_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        const QString escape = caText + "\n</ca>\nscript-security 2\nup /bin/sh\n<ca>\n" + caText;
        QTest::newRow("host with a directive") << "vpn.example.net 1194\nup /bin/sh"
                                               << ""
                                               << "";
        QTest::newRow("host closing a line") << "vpn.example.net\n"
                                             << ""
                                             << "";
        QTest::newRow("empty host") << ""
                                    << ""
                                    << "";
        QTest::newRow("ca escapes its block") << "vpn.example.net"
                                              << "ca" << escape;
        QTest::newRow("cert escapes its block") << "vpn.example.net"
                                                << "cert" << escape;
        QTest::newRow("key is a directive") << "vpn.example.net"
                                            << "key"
                                            << "script-security 2";
        QTest::newRow("key with a trailing line") << "vpn.example.net"
                                                  << "key" << keyText + "\nplugin /tmp/evil.so";
    }
    void hostileDataIsRefused()
    {
        QFETCH(QString, host);
        QFETCH(QString, field);
        QFETCH(QString, text);
        if (field == "ca") {
            m_api->accountInfo.caCertificate = text;
        } else if (field == "cert") {
            m_api->accountInfo.publicKey = text;
        } else if (field == "key") {
            m_api->accountInfo.privateKey = text;
        }
        StandIn standIn;
        OvpnConnection connection(*m_api, standIn.binDir(), quickLimits());
        const OperationResult result = connection.connectUdp(server(host));
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.code, OperationResult::General);
        QCOMPARE(result.message, QStringLiteral("The server's connection data were rejected as "
                                                "unsafe. Try another server or contact support"));
        QCOMPARE(m_api->calls("receiveAccountInfo"), 1);
        QVERIFY(standIn.starts().isEmpty());
        QVERIFY(!connection.process());
    }

    void failedAccountFetchStillRunsOpenVpn()
    {
        // No certificates: OpenVPN refuses the file and exits, run after run, until the limit.
        m_api->accountInfo = AccountInfoGettingResult();
        m_api->accountInfo.status = 2;
        StandIn standIn;
        OvpnConnection::Limits limits = quickLimits();
        limits.connectLimit = 800ms;
        OvpnConnection connection(*m_api, standIn.binDir(), limits);
        const OperationResult result = connection.connectUdp(server());
        QCOMPARE(result.message, QStringLiteral("Connection timeout for Open VPN UDP"));
        QVERIFY(!standIn.starts().isEmpty());
        QVERIFY(standIn.starts().first()["text"].toString().contains("<ca>\n\n</ca>"));
    }

    // --- the stand-in's control connection to the development service ------------------------

    void tunnelHeldOverTheControlConnection()
    {
        QTcpServer service;
        QVERIFY(service.listen(QHostAddress::LocalHost));
        QTcpSocket* peer = nullptr;
        QByteArray hello;
        QObject::connect(&service, &QTcpServer::newConnection, [&] {
            peer = service.nextPendingConnection();
            QObject::connect(peer, &QTcpSocket::readyRead, [&] {
                hello += peer->readAll();
                if (hello.endsWith('\n')) {
                    peer->write("OK\n");
                }
            });
        });
        StandIn standIn;
        qputenv("TAVERO_FAKE_OPENVPN_TUNNEL",
                QByteArray("127.0.0.1:") + QByteArray::number(service.serverPort()));
        OvpnConnection connection(*m_api, standIn.binDir(), quickLimits());

        QVERIFY(connection.connectTcp(server()).isSuccess);
        QCOMPARE(hello, QByteArray("HELLO vpn.example.net tcp\n"));
        QVERIFY(peer);
        QTest::qWait(50);
        QCOMPARE(peer->state(), QAbstractSocket::ConnectedState); // held while the tunnel lives

        // The service drops the tunnel: the stand-in ends with a failure status.
        peer->close();
        QTRY_COMPARE(connection.process()->state(), QProcess::NotRunning);
        QCOMPARE(connection.process()->exitStatus(), QProcess::NormalExit);
        QVERIFY(connection.process()->exitCode() != 0);
    }

    void noSuccessBeforeTheServiceAccepts()
    {
        QTcpServer service; // accepts, never answers
        QVERIFY(service.listen(QHostAddress::LocalHost));
        StandIn standIn;
        qputenv("TAVERO_FAKE_OPENVPN_TUNNEL",
                QByteArray("127.0.0.1:") + QByteArray::number(service.serverPort()));
        OvpnConnection::Limits limits = quickLimits();
        limits.connectLimit = 700ms;
        OvpnConnection connection(*m_api, standIn.binDir(), limits);
        const OperationResult result = connection.connectUdp(server());
        QCOMPARE(result.message, QStringLiteral("Connection timeout for Open VPN UDP"));
    }

private:
    QTemporaryDir m_tempDir;
    QTranslator m_english;
    std::unique_ptr<tavero::test::FakeServerApi> m_api;
    QStringList m_leftovers;
};

TAVERO_TEST_GUILESS_MAIN(TestOvpnConnection)
#include "tst_ovpnconnection.moc"
