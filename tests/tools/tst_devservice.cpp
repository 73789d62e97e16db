// The development service's own promises that other tests build on: the address pool, the
// stand-in tunnel protocol, token rotation, the ready line and certificates real OpenVPN accepts.

#include "api/serverapi.h"
#include "support/devservice.h"
#include "support/messagecapture.h"
#include "support/testmain.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUdpSocket>

using tavero::ServerApi;
using tavero::test::DevService;

namespace {

// Opens a stand-in tunnel connection and returns the service's one-line answer.
QByteArray hello(QTcpSocket& socket, const DevService& service, const QByteArray& line)
{
    socket.connectToHost(service.tunnelHost(), service.tunnelPort());
    if (!socket.waitForConnected(5000))
        return "not connected";
    socket.write(line);
    if (!socket.waitForReadyRead(5000))
        return "no answer";
    return socket.readAll();
}

} // namespace

class TestDevService : public QObject {
    Q_OBJECT

    std::unique_ptr<DevService> m_service;
    tavero::test::MessageCapture m_quiet;

private slots:
    void initTestCase()
    {
        m_service = std::make_unique<DevService>();
        QVERIFY2(m_service->isRunning(), qPrintable(m_service->errorText()));
    }
    void init() { QVERIFY(m_service->reset()); }

    void readyLineNamesEverything()
    {
        QVERIFY(m_service->apiUrl().startsWith("https://127.0.0.1:"));
        QCOMPARE(m_service->ipInfoUrl(), m_service->apiUrl() + "/json");
        QCOMPARE(m_service->controlUrl(), m_service->apiUrl() + "/_control");
        QVERIFY(m_service->probeUrl().startsWith("http://127.0.0.1:"));
        QVERIFY(m_service->tunnelPort() > 0);
        QVERIFY(QFileInfo(m_service->caFile()).isAbsolute());
        for (const char* file : {"ca.pem", "https.pem", "vpn-server.pem", "vpn-server.key",
                                 "client1.pem", "client1.key", "client2.pem", "client2.key"})
            QVERIFY2(QFileInfo::exists(m_service->stateDir() + '/' + file), file);
    }

    void tunnelProtocol()
    {
        QTcpSocket wrongProtocol;
        QCOMPARE(hello(wrongProtocol, *m_service, "HELLO de-1.vpn.tavero.example ftp\n"),
                 QByteArray("ERR\n"));
        QVERIFY(wrongProtocol.state() == QAbstractSocket::UnconnectedState ||
                wrongProtocol.waitForDisconnected(5000));

        QTcpSocket first;
        QTcpSocket second;
        QCOMPARE(hello(first, *m_service, "HELLO nl-1.vpn.tavero.example tcp\n"),
                 QByteArray("OK\n"));
        QCOMPARE(hello(second, *m_service, "HELLO unknown.example udp\n"), QByteArray("OK\n"));
        QCOMPARE(m_service->openTunnels(),
                 (QStringList{"nl-1.vpn.tavero.example", "unknown.example"}));

        ServerApi api(m_service->endpoints());
        const IpGettingResult newest = api.receiveIp(); // the newest tunnel decides
        QVERIFY(newest.isProtected);
        QCOMPARE(newest.ip, QString("203.0.113.250"));

        QVERIFY(m_service->dropTunnels());
        QVERIFY(m_service->openTunnels().isEmpty());
        QVERIFY(!api.receiveIp().isProtected);
        QVERIFY(first.state() == QAbstractSocket::UnconnectedState ||
                first.waitForDisconnected(5000));
        QVERIFY(second.state() == QAbstractSocket::UnconnectedState ||
                second.waitForDisconnected(5000));
    }

    void refreshRotatesTheToken()
    {
        ServerApi api(m_service->endpoints());
        QCOMPARE(
            api.loginByEmail(m_service->account(0).email, m_service->account(0).password).status,
            0);
        const QString first = api.token();
        QVERIFY(m_service->expireTokens());
        QCOMPARE(api.receiveAccountInfo().status, 0);
        QVERIFY(api.token() != first);

        QSignalSpy logout(&api.logoutBroadcaster(), &LogoutBroadcaster::needLogout);
        api.setToken(first); // renewed once, so no longer accepted
        const ServerListGettingResult list = api.receiveServerList();
        QCOMPARE(list.status, 1);
        QCOMPARE(list.message, QString("Token is invalid"));
        QCOMPARE(logout.count(), 0); // only an expired token leads to renewal and log-out
    }

    void addressPoolCountsAsProtected()
    {
        DevService pooled({"--vpn-pool", "127.0.0.0/8"});
        QVERIFY2(pooled.isRunning(), qPrintable(pooled.errorText()));
        ServerApi api(pooled.endpoints());
        const IpGettingResult ip = api.receiveIp();
        QCOMPARE(ip.status, 0);
        QVERIFY(ip.isProtected);
        QCOMPARE(ip.ip, QString("127.0.0.1"));
        QVERIFY(pooled.stop());
    }

    // The stand-in installer in the shapes the update dialog's tests ask for.
    void downloadsComeInTheAskedShape_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("withLength");
        QTest::newRow("default") << "" << 200 << 64 * 1024 << true;
        QTest::newRow("sized") << "?size=100" << 200 << 100 << true;
        QTest::newRow("empty") << "?size=0" << 200 << 0 << true;
        QTest::newRow("chunked") << "?size=40000&chunked=1" << 200 << 40000 << false;
        QTest::newRow("paced") << "?size=40000&pace=5" << 200 << 40000 << true;
        QTest::newRow("too large") << "?size=67108865" << 400 << -1 << true;
        QTest::newRow("not a number") << "?size=12k" << 400 << -1 << true;
        QTest::newRow("pace too slow") << "?pace=1001" << 400 << -1 << true;
    }

    void downloadsComeInTheAskedShape()
    {
        QFETCH(QString, query);
        QFETCH(int, status);
        QFETCH(int, size);
        QFETCH(bool, withLength);

        ServerApi trust(m_service->endpoints()); // adds the service's CA for this process
        QNetworkAccessManager network;
        QNetworkReply* reply = network.get(
            QNetworkRequest(QUrl(m_service->apiUrl() + "/downloads/setup.exe" + query)));
        QSignalSpy finished(reply, &QNetworkReply::finished);
        QVERIFY(finished.wait(10000));
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), status);
        const QByteArray body = reply->readAll();
        if (size >= 0) {
            QCOMPARE(body.size(), size);
            QCOMPARE(reply->hasRawHeader("Content-Length"), withLength);
            if (size > 28)
                QVERIFY(body.startsWith("TAVERO DEVELOPMENT INSTALLER\n"));
        }
        reply->deleteLater();
    }

    void badCommandLineIsRefused()
    {
        DevService broken({"--vpn-pool", "10.8.0.0/33"});
        QVERIFY(!broken.isRunning());
        QVERIFY(broken.errorText().contains("exit code 1"));
    }

    void realOpenVpnAcceptsTheServedCertificates()
    {
        const QString openvpn = QStandardPaths::findExecutable("openvpn", {"/usr/sbin", "/sbin"});
        if (openvpn.isEmpty())
            QSKIP("openvpn is not installed");
        ServerApi api(m_service->endpoints());
        QCOMPARE(
            api.loginByEmail(m_service->account(1).email, m_service->account(1).password).status,
            0);
        const AccountInfoGettingResult account = api.receiveAccountInfo();
        QVERIFY(account.hasVPNData());
        QTemporaryDir dir;
        const auto write = [&](const char* name, const QString& text) {
            QFile file(dir.filePath(name));
            return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) == text.size();
        };
        QVERIFY(write("ca.pem", account.caCertificate));
        QVERIFY(write("client.pem", account.publicKey));
        QVERIFY(write("client.key", account.privateKey));

        QUdpSocket free; // a UDP port for the server, on loopback only
        QVERIFY(free.bind(QHostAddress(QHostAddress::LocalHost), 0));
        const QString port = QString::number(free.localPort());
        free.close();
        // No tunnel device (--dev null): only the TLS handshake with the service's server
        // certificate is exercised, nothing touches the host's interfaces.
        const QString state = m_service->stateDir();
        QProcess server;
        server.setProcessChannelMode(QProcess::MergedChannels);
        server.start(openvpn,
                     {"--dev", "null", "--tls-server", "--dh", "none", "--ca", state + "/ca.pem",
                      "--cert", state + "/vpn-server.pem", "--key", state + "/vpn-server.key",
                      "--proto", "udp4", "--local", "127.0.0.1", "--lport", port, "--verb", "3"});
        QVERIFY(server.waitForStarted(5000));
        QProcess client;
        client.setProcessChannelMode(QProcess::MergedChannels);
        client.start(openvpn, {"--dev", "null", "--tls-client", "--ca", dir.filePath("ca.pem"),
                               "--cert", dir.filePath("client.pem"), "--key",
                               dir.filePath("client.key"), "--remote", "127.0.0.1", port, "--proto",
                               "udp4", "--nobind", "--remote-cert-tls", "server", "--verb", "3"});
        QVERIFY(client.waitForStarted(5000));
        QByteArray clientLog;
        QByteArray serverLog;
        const QDeadlineTimer deadline(20000);
        while (!deadline.hasExpired() && !(clientLog.contains("Peer Connection Initiated") &&
                                           serverLog.contains("Peer Connection Initiated"))) {
            QTest::qWait(100); // lets both processes' output arrive
            clientLog += client.readAll();
            serverLog += server.readAll();
        }
        client.terminate();
        server.terminate();
        client.waitForFinished(5000);
        server.waitForFinished(5000);
        clientLog += client.readAll();
        serverLog += server.readAll();
        QVERIFY2(
            clientLog.contains("VERIFY OK: depth=0, O=Tavero Development, CN=tavero-vpn-server"),
            clientLog.constData());
        QVERIFY2(serverLog.contains("VERIFY OK: depth=0, O=Tavero Development, CN=client2"),
                 serverLog.constData());
        QVERIFY(clientLog.contains("Peer Connection Initiated"));
    }

    void cleanupTestCase() { QVERIFY(m_service->stop()); }
};

TAVERO_TEST_GUILESS_MAIN(TestDevService)
#include "tst_devservice.moc"
