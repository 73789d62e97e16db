#include "api/accountinfogettingresult.h"
#include "api/vpnserverinformation.h"
#include "connection/ovpnconnection.h"
#include "platform/linux/linuxplatform.h"
#include "support/fakeserverapi.h"
#include "support/netnsvpn.h"
#include "support/testenvironment.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <memory>
#include <unistd.h>

using tavero::OvpnConnection;
using tavero::test::NetnsVpn;

// No leaks around a real OpenVPN tunnel: the client namespace's resolver is a "LAN" DNS server;
// the tunnel pushes a "tunnel" DNS server. While the client is connected every look-up must reach
// the tunnel's server only and no IPv6 connection may leave by the LAN; once it has disconnected,
// or has been killed and started again, the resolver file, routes and rules are as before.
class TestLeak : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void tunnelKeepsLookupsAndIpv6Inside_data();
    void tunnelKeepsLookupsAndIpv6Inside();

private:
    QString lookUp() const;
    int queries(const QString& server) const;
    bool ipv6Reachable() const;
    QStringList networkState() const;
    QString resolvConf() const;
    bool startDns(const QString& name, const QString& answer, const QStringList& addresses);
    QProcessEnvironment clientEnvironment() const;

    QTemporaryDir m_work;
    std::unique_ptr<NetnsVpn> m_vpn;
    std::vector<std::unique_ptr<QProcess>> m_dns;
};

void TestLeak::initTestCase()
{
    // netns-vpn says why it cannot run (root, /dev/net/tun, ip netns, openvpn).
    const QStringList system{"/usr/local/sbin", "/usr/sbin", "/sbin", "/usr/bin", "/bin"};
    for (const char* program : {"python3", "getent"}) {
        if (QStandardPaths::findExecutable(program, system).isEmpty())
            QSKIP(qPrintable(QStringLiteral("%1 is not installed").arg(program)));
    }
    QVERIFY(m_work.isValid());
    m_vpn = std::make_unique<NetnsVpn>(qEnvironmentVariable("TAVERO_NETNS_VPN"));
    switch (m_vpn->start(m_work.path())) {
    case NetnsVpn::Outcome::Running:
        break;
    case NetnsVpn::Outcome::Unsupported:
        QSKIP(qPrintable(m_vpn->reason()));
    case NetnsVpn::Outcome::Failed:
        QFAIL(qPrintable("netns-vpn failed: " + m_vpn->reason()));
    }
    // The LAN server answers on the server's veth addresses, the tunnel's on both tunnels' own.
    QVERIFY2(startDns("lan", "10.99.0.1", {m_vpn->host(), m_vpn->host6()}),
             m_dns.back()->readAllStandardError());
    QVERIFY2(startDns("tunnel", "10.99.0.2", {m_vpn->udpGateway(), m_vpn->tcpGateway()}),
             m_dns.back()->readAllStandardError());
}

void TestLeak::cleanupTestCase()
{
    m_dns.clear();
    if (m_vpn)
        m_vpn->stop();
}

bool TestLeak::startDns(const QString& name, const QString& answer, const QStringList& addresses)
{
    auto process = std::make_unique<QProcess>();
    process->start(QStringLiteral("ip"),
                   QStringList{"netns", "exec", m_vpn->serverNamespace(), QFINDTESTDATA("tiny-dns"),
                               answer, m_work.filePath(name + ".log")} +
                       addresses);
    QElapsedTimer wait;
    wait.start();
    while (!process->canReadLine() && process->state() != QProcess::NotRunning &&
           wait.elapsed() < 30000) {
        process->waitForReadyRead(200);
    }
    const bool ready = process->readLine() == "ready\n";
    m_dns.push_back(std::move(process));
    return ready;
}

QString TestLeak::lookUp() const
{
    QString output;
    m_vpn->runInClient({"getent", "ahostsv4", "leak.test"}, &output);
    return output.section(QLatin1Char(' '), 0, 0);
}

int TestLeak::queries(const QString& server) const
{
    QFile log(m_work.filePath(server + ".log"));
    return log.open(QIODevice::ReadOnly) ? log.readAll().count('\n') : 0;
}

bool TestLeak::ipv6Reachable() const
{
    const QString connect =
        QStringLiteral("import socket; socket.create_connection(('%1', 53), 5)");
    return m_vpn->runInClient({"python3", "-c", connect.arg(m_vpn->host6())}) == 0;
}

QString TestLeak::resolvConf() const
{
    QFile file("/etc/netns/" + m_vpn->clientNamespace() + "/resolv.conf");
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

QStringList TestLeak::networkState() const
{
    QString state = resolvConf();
    for (const char* family : {"-4", "-6"}) {
        for (const char* object : {"route", "rule"}) {
            QString listing;
            m_vpn->runInClient({"ip", family, object, "show", "table", "all"}, &listing);
            state += listing;
        }
    }
    return state.split(QLatin1Char('\n')); // a difference shows as one line
}

QProcessEnvironment TestLeak::clientEnvironment() const
{
    // The namespace is the test's own, so the client may change its network; the resolver file
    // it manages is the namespace's, never the host's.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("TAVERO_KEEP_NETWORK"));
    environment.insert("TAVERO_RESOLV_CONF",
                       "/etc/netns/" + m_vpn->clientNamespace() + "/resolv.conf");
    environment.insert("XDG_STATE_HOME", m_work.filePath("state"));
    environment.insert("XDG_RUNTIME_DIR", m_work.filePath("run"));
    environment.insert("TAVERO_API_URL", "https://127.0.0.1:9/");
    environment.insert("TAVERO_NO_ELEVATE", "1");
    return environment;
}

void TestLeak::tunnelKeepsLookupsAndIpv6Inside_data()
{
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<bool>("killed");
    QTest::newRow("udp, disconnect") << "udp" << false;
    QTest::newRow("tcp, killed and started again") << "tcp" << true;
}

void TestLeak::tunnelKeepsLookupsAndIpv6Inside()
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
    client.setProcessEnvironment(clientEnvironment());
    client.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    client.start("ip", {"netns", "exec", m_vpn->clientNamespace(),
                        QCoreApplication::applicationFilePath(), "--leak-client", m_vpn->host(),
                        m_work.filePath("pki"), m_vpn->programDirectory(), protocol});
    QVERIFY(client.waitForReadyRead(60000));
    QCOMPARE(client.readLine(), QByteArray("UP\n"));

    const QString gateway = protocol == "udp" ? m_vpn->udpGateway() : m_vpn->tcpGateway();
    QVERIFY2(resolvConf().contains("nameserver " + gateway + "\n"), qPrintable(resolvConf()));
    QVERIFY(!resolvConf().contains(m_vpn->host()));
    const int lan = queries("lan");
    const int tunnel = queries("tunnel");
    QCOMPARE(lookUp(), QStringLiteral("10.99.0.2"));
    QVERIFY(queries("tunnel") > tunnel);
    QCOMPARE(queries("lan"), lan);
    QVERIFY(!ipv6Reachable());

    if (killed) {
        ::kill(pid_t(client.processId()), SIGKILL);
        QVERIFY(client.waitForFinished(30000));
        QVERIFY(QFile::exists(m_work.filePath("state/tavero/tunnelnetwork.json")));
        // The next start of the client (tavero-cli does it before every command) cleans up.
        QProcess restart;
        restart.setProcessEnvironment(clientEnvironment());
        restart.start("ip",
                      {"netns", "exec", m_vpn->clientNamespace(),
                       qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + "/tavero-cli", "status"});
        QVERIFY(restart.waitForFinished(60000));
    } else {
        client.closeWriteChannel();
        QVERIFY(client.waitForFinished(30000));
        QCOMPARE(client.exitCode(), 0);
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_vpn->clientTunDevices().isEmpty(), 10000);
    QCOMPARE(networkState(), before);
    QVERIFY(!QFile::exists(m_work.filePath("state/tavero/tunnelnetwork.json")));
    QVERIFY(ipv6Reachable());
}

// The client side, run by the test inside the client namespace: connects with the product's
// driver and platform, says "UP", and disconnects when its standard input closes.
static int runLeakClient(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    const auto pki = [&](const QString& name) {
        QFile file(arguments.at(3) + QLatin1Char('/') + name);
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
    };
    tavero::test::FakeServerApi api;
    api.accountInfo.status = RequestResult::Ok;
    api.accountInfo.caCertificate = pki("ca.pem");
    api.accountInfo.publicKey = pki("client1.pem");
    api.accountInfo.privateKey = pki("client1.key");
    VpnServerInformation server;
    server.name = QStringLiteral("netns");
    server.host = arguments.at(2);
    server.hasOvpnConfig = true;
    tavero::LinuxPlatform platform;
    OvpnConnection connection(api, arguments.at(4), {}, &platform);
    const OperationResult result = connection.connect(
        server, arguments.at(5) == "tcp" ? OvpnConnection::Tcp : OvpnConnection::Udp);
    std::printf("%s\n", result.isSuccess ? "UP" : qPrintable("FAILED " + result.message));
    std::fflush(stdout);
    if (!result.isSuccess)
        return 1;
    for (std::string line; std::getline(std::cin, line);) {
    }
    connection.disconnect();
    return 0;
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
