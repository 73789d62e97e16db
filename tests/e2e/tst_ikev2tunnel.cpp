#include "api/serverapi.h"
#include "platform/linux/linuxplatform.h"
#include "support/testenvironment.h"
#include "support/testmain.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

using tavero::LinuxPlatform;

namespace {

QString run(const QString& program, const QStringList& arguments, const QByteArray& input = {},
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString routes()
{
    return run(QStringLiteral("ip"), {"-4", "route", "show", "table", "main"});
}

bool processAlive(const QString& pidFile)
{
    QFile file(pidFile);
    return file.open(QIODevice::ReadOnly) &&
           ::kill(pid_t(file.readAll().trimmed().toInt()), 0) == 0;
}

} // namespace

// The client's own charon against the development service's IKEv2 responder, in the client
// network namespace the service made: the whole test process moves into it first, so the tunnel,
// the routes and the IP check never touch the host's network.
class TestIkev2Tunnel : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (::geteuid() != 0)
            QSKIP("needs root to create network namespaces and TUN devices");
        if (!QFileInfo::exists("/dev/net/tun") || !QFileInfo(m_paths.swanctl).isExecutable() ||
            QStandardPaths::findExecutable("ip").isEmpty())
            QSKIP("needs /dev/net/tun, strongSwan and iproute2 (scripts/setup installs them)");
        QVERIFY(m_dir.isValid());
        m_paths.stateDirectory = m_dir.filePath(QStringLiteral("ikev2"));
        // The responder's certificate comes from the service's CA, as in the demo.
        qputenv("TAVERO_CA_FILE", QFile::encodeName(m_dir.filePath("service/ca.pem")));
        m_service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_service.start(qEnvironmentVariable("TAVERO_DEVSERVICE"),
                        {"--ikev2", "--exit-with-parent", "--state-dir", m_dir.filePath("service"),
                         "--https-port", "0", "--http-port", "0", "--tunnel-port", "0"});
        QTRY_VERIFY_WITH_TIMEOUT(
            m_service.canReadLine() || m_service.state() == QProcess::NotRunning, 120000);
        m_ready = QJsonDocument::fromJson(m_service.readLine()).object();
        QVERIFY2(!ready("netns").isEmpty(), "the service started no IKEv2 responder");
        // Threads started from here on (Qt's network threads, charon) inherit the namespace.
        const int fd = ::open(qPrintable("/run/netns/" + ready("netns")), O_RDONLY | O_CLOEXEC);
        QVERIFY(fd >= 0);
        QCOMPARE(::setns(fd, CLONE_NEWNET), 0);
        ::close(fd);
    }
    void cleanupTestCase()
    {
        if (m_service.state() == QProcess::NotRunning)
            return;
        m_service.terminate();
        QVERIFY(m_service.waitForFinished(30000));
        QVERIFY2(!QFile::exists("/run/netns/" + ready("netns")),
                 "the client namespace is left over");
    }
    void tunnelCarriesAllTrafficAndGoesAway()
    {
        tavero::ServerApi api({ready("api"), ready("ipinfo"), ready("probe"), ready("ca")});
        QVERIFY(!api.receiveIp().isProtected);
        // The first client applies the DNS server the responder hands out, to a resolver file of
        // the test's (TAVERO_RESOLV_CONF) that only getent below reads, in a mount namespace of
        // its own.
        QProcess dns;
        dns.start("ip", {"netns", "exec", ready("ikev2Netns"), QFINDTESTDATA("../leak/tiny-dns"),
                         "10.99.0.3", m_dir.filePath("dns.log"), ready("ikev2Dns")});
        QVERIFY(dns.waitForReadyRead(30000));
        const QString resolvConf = m_dir.filePath("resolv.conf");
        QFile original(resolvConf);
        QVERIFY(original.open(QIODevice::WriteOnly) && original.write("nameserver 10.233.0.1\n"));
        original.close();
        const auto lookUp = [&resolvConf] {
            return run("unshare", {"-m", "sh", "-c",
                                   "mount --bind \"$0\" /etc/resolv.conf && getent ahostsv4 "
                                   "ikev2.test",
                                   resolvConf})
                .section(' ', 0, 0);
        };
        qunsetenv("TAVERO_KEEP_NETWORK");
        qputenv("TAVERO_RESOLV_CONF", QFile::encodeName(resolvConf));
        LinuxPlatform platform(ikev2Options());
        const OperationResult result =
            platform.connectIKEv2(ready("ikev2"), "alice-vpn", "Alice-VPN-secret", false);
        qputenv("TAVERO_KEEP_NETWORK", "1");
        QVERIFY2(result.isSuccess, qPrintable(result.message));
        QCOMPARE(lookUp(), QStringLiteral("10.99.0.3"));
        const tavero::AdapterInfo adapter = LinuxPlatform::getAdapterInfo("TAVERO IKEv2");
        QVERIFY(adapter.interfaceIndex != 0);
        QVERIFY(!adapter.addresses.isEmpty());
        const QString table = routes();
        const QString device = table.section(QLatin1String("0.0.0.0/1 dev "), 1).section(' ', 0, 0);
        QVERIFY2(device.startsWith(QLatin1String("ipsec")), qPrintable(table));
        QVERIFY2(table.contains("128.0.0.0/1 dev " + device), qPrintable(table));
        QVERIFY2(table.contains(ready("ikev2") + " via"), qPrintable(table));
        const QString pidFile = m_paths.stateDirectory + QStringLiteral("/tavero-charon.pid");
        QVERIFY(processAlive(pidFile));
        // The IP check goes through the tunnel: the service sees a pool address.
        const IpGettingResult through = api.receiveIp();
        QVERIFY(through.isProtected);
        QVERIFY2(through.ip.startsWith(QLatin1String("10.9.0.")), qPrintable(through.ip));
        // A new run of the client finds the charon of one that never hung up, stops it and dials.
        QFile::copy(pidFile, m_dir.filePath("first.pid"));
        LinuxPlatform next(ikev2Options());
        QVERIFY(
            next.connectIKEv2(ready("ikev2"), "alice-vpn", "Alice-VPN-secret", false).isSuccess);
        QVERIFY(!processAlive(m_dir.filePath("first.pid")));
        QVERIFY(processAlive(pidFile));
        QVERIFY(api.receiveIp().isProtected);
        QVERIFY(next.disconnect().isSuccess);
        verifyNothingLeft(device, m_paths.stateDirectory);
        QVERIFY(!api.receiveIp().isProtected);
        QVERIFY(next.disconnect().isSuccess); // nothing up: still fine
        QVERIFY(platform.disconnect().isSuccess);
        QVERIFY(original.open(QIODevice::ReadOnly));
        QCOMPARE(original.readAll(), QByteArray("nameserver 10.233.0.1\n"));
    }
    // A refused dial leaves no charon, route or state behind; tavero-cli then goes on to OpenVPN.
    void cliTriesIkev2First_data()
    {
        QTest::addColumn<bool>("accepting");
        QTest::addColumn<QString>("protocol");
        QTest::newRow("IKEv2 up") << true << "IKEv2";
        QTest::newRow("IKEv2 refused") << false << "Open VPN UDP";
    }
    void cliTriesIkev2First()
    {
        QFETCH(bool, accepting);
        QFETCH(QString, protocol);
        const QString cli =
            qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + QStringLiteral("/tavero-cli");
        QVERIFY(QFile::exists(cli));
        tavero::test::TestEnvironment::clearSettings();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* key : {"api", "ipinfo", "probe"})
            environment.insert(QStringLiteral("TAVERO_%1_URL").arg(QString(key).toUpper()),
                               ready(key));
        environment.insert("TAVERO_CA_FILE", ready("ca"));
        environment.insert("TAVERO_FAKE_OPENVPN_TUNNEL", ready("tunnel"));
        QVERIFY(run(cli, {"--json", "login", "alice@tavero.example"}, "alice-dev-password\n",
                    environment)
                    .contains("\"ok\":true"));
        QVERIFY(setAccepting(accepting));
        QProcess connect;
        connect.setProcessEnvironment(environment);
        connect.start(cli, {"--json", "connect", "--country", "SE"});
        QByteArray output;
        QTRY_VERIFY_WITH_TIMEOUT(
            (output += connect.readAllStandardOutput()).contains("\"Connected\"") ||
                connect.state() == QProcess::NotRunning,
            120000);
        const QByteArray connected = output.mid(output.lastIndexOf("\"Connected\""));
        QVERIFY2(connected.contains(QString("\"protocol\":\"%1\"").arg(protocol).toUtf8()),
                 output.constData());
        ::kill(pid_t(connect.processId()), SIGINT);
        QVERIFY(connect.waitForFinished(60000));
        QVERIFY(setAccepting(true));
        verifyNothingLeft({}, tavero::StrongswanPaths().stateDirectory);
    }

private:
    LinuxPlatform::Options ikev2Options() const
    {
        LinuxPlatform::Options options;
        options.ikev2 = m_paths;
        return options;
    }
    QString ready(const char* key) const { return m_ready.value(QLatin1String(key)).toString(); }
    bool setAccepting(bool accepting)
    {
        const QString url = ready("control") + QStringLiteral("/ikev2?accept=%1").arg(accepting);
        return run(QStringLiteral("curl"), {"-sf", "--cacert", ready("ca"), "-d", "", url})
            .contains("true");
    }
    void verifyNothingLeft(const QString& device, const QString& stateDirectory)
    {
        QTRY_VERIFY_WITH_TIMEOUT(!routes().contains(QLatin1String("0.0.0.0/1")), 10000);
        QVERIFY2(!routes().contains(ready("ikev2") + " via"), qPrintable(routes()));
        if (!device.isEmpty())
            QTRY_VERIFY_WITH_TIMEOUT(LinuxPlatform::getAdapterInfo(device).interfaceIndex == 0,
                                     10000);
        QCOMPARE(LinuxPlatform::getAdapterInfo(QStringLiteral("TAVERO IKEv2")).interfaceIndex, 0u);
        QVERIFY(
            QDir(stateDirectory)
                .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot)
                .isEmpty());
    }

    QTemporaryDir m_dir;
    QProcess m_service;
    QJsonObject m_ready;
    tavero::StrongswanPaths m_paths;
};

TAVERO_TEST_GUILESS_MAIN(TestIkev2Tunnel)
#include "tst_ikev2tunnel.moc"
