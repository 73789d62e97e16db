// The development service's own promises that other tests build on: the address pool, the
// stand-in tunnel protocol, token rotation and the ready line.

#include "api/serverapi.h"
#include "support/devservice.h"
#include "support/messagecapture.h"
#include "support/testmain.h"

#include <QFileInfo>
#include <QTcpSocket>

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

    void badCommandLineIsRefused()
    {
        DevService broken({"--vpn-pool", "10.8.0.0/33"});
        QVERIFY(!broken.isRunning());
        QVERIFY(broken.errorText().contains("exit code 1"));
    }

    void cleanupTestCase() { QVERIFY(m_service->stop()); }
};

TAVERO_TEST_GUILESS_MAIN(TestDevService)
#include "tst_devservice.moc"
