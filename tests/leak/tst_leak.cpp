#include "api/vpnserverinformation.h"
#include "connection/ovpnconnection.h"
#include "platform/linux/linuxplatform.h"
#include "support/fakeserverapi.h"
#include "support/netnsvpn.h"
#include "support/testenvironment.h"

#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <iostream>
#include <memory>

using tavero::test::NetnsVpn;

static QString readText(const QString& path)
{
    return QString::fromLatin1(tavero::test::TestEnvironment::readFile(path));
}

// No leaks around a real OpenVPN tunnel: the client namespace's resolver is a "LAN" DNS server;
// the tunnel pushes a "tunnel" DNS server; each runs in a network namespace of its own. While the
// client is connected every look-up must reach the tunnel's server only and no IPv6 connection may
// leave by the LAN; once it has disconnected, or has been killed and started again, the resolver
// file, routes and rules are as before.
class TestLeak : public QObject {
    Q_OBJECT
    QTemporaryDir m_work;
    std::unique_ptr<NetnsVpn> m_vpn;
    std::vector<std::unique_ptr<QProcess>> m_dns;

    bool startDns(const QString& name, const QString& answer, const QStringList& addresses)
    {
        m_dns.push_back(std::make_unique<QProcess>());
        QProcess& dns = *m_dns.back();
        dns.start("ip",
                  QStringList{"netns", "exec", m_vpn->value(name + "-dns-ns"),
                              QFINDTESTDATA("tiny-dns"), answer, m_work.filePath(name + ".log")} +
                      addresses);
        QDeadlineTimer deadline(30000);
        while (!dns.canReadLine() && dns.state() != QProcess::NotRunning && !deadline.hasExpired())
            dns.waitForReadyRead(200);
        return dns.readLine() == "ready\n";
    }
    int queries(const QString& server) const
    {
        return readText(m_work.filePath(server + ".log")).count('\n');
    }
    QString lookUp() const
    {
        QString output;
        m_vpn->runInClient({"getent", "ahostsv4", "leak.test"}, &output);
        return output.section(QLatin1Char(' '), 0, 0);
    }
    bool ipv6Reachable() const
    {
        const QString connect("import socket; socket.create_connection(('%1', 53), 5)");
        return m_vpn->runInClient({"python3", "-c", connect.arg(m_vpn->value("lan-dns6"))}) == 0;
    }
    QString resolvConf() const { return readText(resolvConfPath()); }
    QString resolvConfPath() const
    {
        return "/etc/netns/" + m_vpn->clientNamespace() + "/resolv.conf";
    }
    QStringList networkState() const
    {
        QString state = resolvConf();
        for (const char* listing : {"-4 route", "-4 rule", "-6 route", "-6 rule"}) {
            QString output;
            m_vpn->runInClient(QString("ip %1 show table all").arg(listing).split(' '), &output);
            state += output;
        }
        return state.split(QLatin1Char('\n')); // a difference shows as one line
    }
    // Runs `arguments` in the client namespace, which is the test's own, so the client may change
    // its network; the resolver file it manages is the namespace's, never the host's.
    void startInClient(QProcess& process, const QStringList& arguments) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("TAVERO_KEEP_NETWORK");
        environment.insert("TAVERO_RESOLV_CONF", resolvConfPath());
        for (const char* name : {"XDG_STATE_HOME", "XDG_RUNTIME_DIR"})
            environment.insert(name, m_work.filePath(name));
        environment.insert("TAVERO_API_URL", "https://127.0.0.1:9/");
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start("ip", QStringList{"netns", "exec", m_vpn->clientNamespace()} + arguments);
    }

private slots:
    void initTestCase()
    {
        // netns-vpn says why it cannot run (root, /dev/net/tun, ip netns, openvpn).
        m_vpn = std::make_unique<NetnsVpn>(qEnvironmentVariable("TAVERO_NETNS_VPN"));
        const NetnsVpn::Outcome outcome = m_vpn->start(m_work.path());
        if (outcome == NetnsVpn::Outcome::Unsupported)
            QSKIP(qPrintable(m_vpn->reason()));
        QVERIFY2(outcome == NetnsVpn::Outcome::Running, qPrintable(m_vpn->reason()));
        QVERIFY(startDns("lan", "10.99.0.1", {m_vpn->value("lan-dns"), m_vpn->value("lan-dns6")}));
        QVERIFY(startDns("tunnel", "10.99.0.2", {m_vpn->value("tunnel-dns")}));
    }
    void cleanupTestCase()
    {
        m_dns.clear();
        if (m_vpn)
            m_vpn->stop();
    }

    void tunnelKeepsLookupsAndIpv6Inside_data()
    {
        QTest::addColumn<QString>("protocol");
        QTest::addColumn<bool>("killed");
        QTest::newRow("udp, disconnect") << "udp" << false;
        QTest::newRow("tcp, killed and started again") << "tcp" << true;
    }
    void tunnelKeepsLookupsAndIpv6Inside()
    {
        QFETCH(QString, protocol);
        QFETCH(bool, killed);
        const QStringList before = networkState();
        // Without the tunnel the LAN's server answers, and IPv6 to the LAN works.
        const int lanBefore = queries("lan");
        QCOMPARE(lookUp(), QStringLiteral("10.99.0.1"));
        QVERIFY(queries("lan") > lanBefore);
        QVERIFY(ipv6Reachable());

        QProcess client;
        startInClient(client,
                      {QCoreApplication::applicationFilePath(), "--leak-client", m_vpn->host(),
                       m_work.filePath("pki"), m_vpn->programDirectory(), protocol});
        QVERIFY(client.waitForStarted() && client.waitForReadyRead(60000));
        QCOMPARE(client.readLine(), QByteArray("UP\n"));
        QVERIFY2(resolvConf().contains("nameserver " + m_vpn->value("tunnel-dns") + "\n") &&
                     !resolvConf().contains(m_vpn->value("lan-dns")),
                 qPrintable(resolvConf()));
        const int lan = queries("lan"), tunnel = queries("tunnel");
        QCOMPARE(lookUp(), QStringLiteral("10.99.0.2"));
        QVERIFY(queries("tunnel") > tunnel);
        QCOMPARE(queries("lan"), lan);
        QVERIFY(!ipv6Reachable());

        const QString state = m_work.filePath("XDG_STATE_HOME/tavero/tunnelnetwork.json");
        if (killed) {
            ::kill(pid_t(client.processId()), SIGKILL);
            QVERIFY(client.waitForFinished(30000));
            QVERIFY(QFile::exists(state));
            // The next start of the client (tavero-cli cleans up before every command).
            QProcess restart;
            startInClient(restart,
                          {qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + "/tavero-cli", "status"});
            QVERIFY(restart.waitForFinished(60000));
        } else {
            client.closeWriteChannel();
            QVERIFY(client.waitForFinished(30000));
            QCOMPARE(client.exitCode(), 0);
        }
        QTRY_VERIFY_WITH_TIMEOUT(m_vpn->clientTunDevices().isEmpty(), 10000);
        QCOMPARE(networkState(), before);
        QVERIFY(!QFile::exists(state));
        QVERIFY(ipv6Reachable());
    }
};

// The client, run by the test inside the client namespace: connects with the product's driver
// and platform, says "UP", and disconnects when its standard input closes.
static int runLeakClient(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const auto pki = [&](const char* name) { return readText(arguments.at(3) + '/' + name); };
    tavero::test::FakeServerApi api;
    api.accountInfo.status = RequestResult::Ok;
    api.accountInfo.caCertificate = pki("ca.pem");
    api.accountInfo.publicKey = pki("client1.pem");
    api.accountInfo.privateKey = pki("client1.key");
    VpnServerInformation server;
    server.host = arguments.at(2);
    tavero::LinuxPlatform platform;
    tavero::OvpnConnection connection(api, arguments.at(4), {}, &platform);
    const OperationResult result =
        connection.connect(server, arguments.at(5) == "tcp" ? connection.Tcp : connection.Udp);
    std::cout << (result.isSuccess ? "UP" : qPrintable("FAILED " + result.message)) << std::endl;
    for (std::string line; result.isSuccess && std::getline(std::cin, line);) {
    }
    connection.disconnect();
    return result.isSuccess ? 0 : 1;
}

int main(int argc, char** argv)
{
    if (argc == 6 && qstrcmp(argv[1], "--leak-client") == 0)
        return runLeakClient(argc, argv);
    tavero::test::TestEnvironment environment;
    QCoreApplication app(argc, argv);
    TestLeak test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_leak.moc"
