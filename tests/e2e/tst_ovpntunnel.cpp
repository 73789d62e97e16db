#include "api/vpnserverinformation.h"
#include "connection/ovpnconnection.h"
#include "support/fakeserverapi.h"
#include "support/netnsvpn.h"
#include "support/testmain.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <memory>
#include <unistd.h>

using tavero::OvpnConnection;
using tavero::test::NetnsVpn;

// A real tunnel: the client's own generated configuration, run by the real openvpn in one network
// namespace, against a real OpenVPN server in another.
class TestOvpnTunnel : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (::geteuid() != 0)
            QSKIP("needs root to create network namespaces and tun devices");
        if (!QFileInfo::exists(QStringLiteral("/dev/net/tun")))
            QSKIP("/dev/net/tun is missing");
        const QStringList system{"/usr/local/sbin", "/usr/sbin", "/sbin", "/usr/bin", "/bin"};
        if (QStandardPaths::findExecutable(QStringLiteral("openvpn"), system).isEmpty())
            QSKIP("openvpn is not installed (scripts/setup installs it)");
        if (QStandardPaths::findExecutable(QStringLiteral("ping"), system).isEmpty())
            QSKIP("ping is not installed (scripts/setup installs it)");
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
    }

    void cleanupTestCase()
    {
        if (!m_vpn)
            return;
        const QString client = m_vpn->clientNamespace();
        m_vpn->stop();
        if (!client.isEmpty())
            QVERIFY2(!QFile::exists("/run/netns/" + client), "the client namespace is left over");
    }

    void tunnelCarriesTrafficAndGoesAway_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("udp") << int(OvpnConnection::Udp);
        QTest::newRow("tcp") << int(OvpnConnection::Tcp);
    }
    void tunnelCarriesTrafficAndGoesAway()
    {
        QFETCH(int, type);
        tavero::test::FakeServerApi api;
        api.accountInfo = m_vpn->accountInfo();
        QVERIFY(api.accountInfo.hasVPNData());
        const VpnServerInformation server = m_vpn->server();
        const QString gateway =
            type == OvpnConnection::Udp ? m_vpn->udpGateway() : m_vpn->tcpGateway();

        // The product's limits: a real openvpn must make it within them.
        OvpnConnection connection(api, m_vpn->programDirectory());
        QVERIFY(m_vpn->clientTunDevices().isEmpty());
        const OperationResult result =
            connection.connect(server, OvpnConnection::ConnectionType(type));
        QVERIFY2(result.isSuccess,
                 qPrintable(result.message + "\nserver log:\n" +
                            m_vpn->serverLog(type == OvpnConnection::Udp ? "udp" : "tcp")));
        QCOMPARE(m_vpn->clientTunDevices(), QStringList{"tun0"});

        QString pingOutput;
        QCOMPARE(m_vpn->runInClient({"ping", "-n", "-c", "1", "-w", "10", gateway}, &pingOutput),
                 0);
        QVERIFY2(pingOutput.contains("1 received"), qPrintable(pingOutput));

        QVERIFY(connection.disconnect().isSuccess);
        QTRY_VERIFY_WITH_TIMEOUT(m_vpn->clientTunDevices().isEmpty(), 10000);
        QVERIFY(m_vpn->runInClient({"ping", "-n", "-c", "1", "-w", "1", gateway}) != 0);
    }

private:
    QTemporaryDir m_work;
    std::unique_ptr<NetnsVpn> m_vpn;
};

TAVERO_TEST_GUILESS_MAIN(TestOvpnTunnel)
#include "tst_ovpntunnel.moc"
