#include "api/serverapi.h"
#include "app/settings.h"
#include "connection/connectionchain.h"
#include "connection/killswitcher.h"
#include "platform/platformoverrides.h"
#include "support/fakeserverapi.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTranslator>
#include <memory>

using tavero::ConnectionChain;
using tavero::ConnectionKeeper;
using tavero::KillSwitcher;
using tavero::PlatformOverrides;
using tavero::Settings;
using tavero::test::FakeServerApi;
using tavero::test::TestPlatform;

namespace {

QString pem(const QString& label)
{
    return QStringLiteral("-----BEGIN %1-----\nMIIBCgKCAQEAq1w=\n-----END %1-----").arg(label);
}

IpGettingResult ipAnswer(bool isProtected, int status = RequestResult::Ok)
{
    IpGettingResult ip;
    ip.status = status;
    ip.isProtected = isProtected;
    ip.ip = isProtected ? "203.0.113.7" : "198.51.100.1";
    return ip;
}

VpnServerInformation server(const QString& name, bool ovpn = true, bool account = true)
{
    VpnServerInformation s;
    s.countryId = 7;
    s.name = name;
    s.host = name + ".vpn.example";
    s.isAvailable = true;
    s.hasOvpnConfig = ovpn;
    s.hasAccountData = account;
    s.vpnUsername = "user";
    s.vpnPassword = "secret";
    return s;
}

} // namespace

// The chain with a scripted platform (IKEv2 and the network switch), the OpenVPN stand-in as
// openvpn, and a scripted service.
class TestConnectionChain : public QObject {
    Q_OBJECT

    QTemporaryDir m_programDir;
    QTranslator m_english;
    std::unique_ptr<FakeServerApi> m_api;
    std::unique_ptr<TestPlatform> m_platform;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<KillSwitcher> m_killSwitcher;
    std::unique_ptr<ConnectionChain> m_chain;

    ConnectionChain& chain() { return *m_chain; }

    void makeChain()
    {
        ConnectionChain::Options options;
        options.openVpnDirectory = m_programDir.path();
        options.openVpnLimits.connectLimit = std::chrono::milliseconds(3000);
        options.openVpnLimits.silenceLimit = std::chrono::milliseconds(2000);
        options.openVpnLimits.wait = std::chrono::milliseconds(50);
        options.openVpnLimits.slice = std::chrono::milliseconds(10);
        options.reestablishIntervalMs = 150;
        options.keeperIntervalMs = 30;
        options.asyncPollWindowMs = 50;
        m_chain = std::make_unique<ConnectionChain>(*m_api, *m_platform, *m_settings,
                                                    *m_killSwitcher, options);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_english.load(":/translations/eng"));
        QCoreApplication::installTranslator(&m_english);
        QVERIFY(QFile::link(qEnvironmentVariable("TAVERO_FAKE_OPENVPN"),
                            m_programDir.path() + "/openvpn"));
    }

    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", "success");
        PlatformOverrides::setAdministrator(true);
        PlatformOverrides::setRdpListening(false);
        tavero::ServerApi::setIsOpenVpnAllowed(true);
        tavero::ServerApi::setIsIKEv2Allowed(true);
        m_api = std::make_unique<FakeServerApi>();
        m_api->ipResult = ipAnswer(true);
        m_api->accountInfo.status = RequestResult::Ok;
        m_api->accountInfo.caCertificate = pem("CERTIFICATE");
        m_api->accountInfo.publicKey = pem("CERTIFICATE");
        m_api->accountInfo.privateKey = pem("PRIVATE KEY");
        m_platform = std::make_unique<TestPlatform>();
        m_settings = std::make_unique<Settings>();
        m_killSwitcher = std::make_unique<KillSwitcher>(*m_api, *m_platform, *m_settings);
        makeChain();
    }

    void cleanup()
    {
        m_chain.reset(); // kills any stand-in still running
        m_killSwitcher.reset();
        PlatformOverrides::setAdministrator(std::nullopt);
        PlatformOverrides::setRdpListening(std::nullopt);
    }

    // The attempt list follows the rights and a listening remote desktop; when every attempt
    // fails, the message names what was tried.
    void chainAndItsFailure_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("admin");
        QTest::addColumn<bool>("rdp");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QString>("message");
        const QStringList all{"IKEv2", "Open VPN UDP", "Open VPN TCP"};
        const QString none = "No  specified protocols are supported by the selected server.";
        QTest::newRow("administrator")
            << 31 << true << false << all << "Failed to connect via any protocols";
        QTest::newRow("TCP and UDP")
            << int(OvpnTcp | OvpnUdp) << true << false << QStringList(all.mid(1))
            << "Unable to connect using protocol Open VPN TCP, Open VPN UDP";
        QTest::newRow("no rights, no remote desktop")
            << 31 << false << false << QStringList{"IKEv2"}
            << "Failed to connect via any protocols";
        QTest::newRow("no rights, remote desktop") << 31 << false << true << QStringList{} << none;
        QTest::newRow("no rights, remote desktop, IKEv2 alone")
            << int(IKEv2) << false << true << QStringList{"IKEv2"}
            << "Unable to connect using protocol IKEv2";
        QTest::newRow("L2TP and PPTP are never dialled")
            << int(ProtocolType::L2tp | ProtocolType::Pptp) << true << false << QStringList{}
            << none;
    }
    void chainAndItsFailure()
    {
        QFETCH(int, flags);
        QFETCH(bool, admin);
        QFETCH(bool, rdp);
        QFETCH(QStringList, expected);
        PlatformOverrides::setAdministrator(admin);
        PlatformOverrides::setRdpListening(rdp);
        // Without administrator rights the program forbids OpenVPN for the whole process.
        tavero::ServerApi::setIsOpenVpnAllowed(admin);
        m_settings->setProtocolTypes(QFlags<ProtocolType>(flags));
        QVERIFY(chain().createChain().isSuccess);
        QCOMPARE(chain().chainNames(), expected);

        m_platform->queueResult("connectIKEv2", OperationResult(QString("dial failed")));
        qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", "error");
        const OperationResult result = chain().connect(server("de-1"));
        QVERIFY(!result.isSuccess);
        QTEST(result.message, "message");
        QCOMPARE(chain().mode(), ConnectionChain::Failed);
        QCOMPARE(chain().currProtocolName(), QString("Disconnected"));
        QCOMPARE(chain().currentServer().countryId, -1);
    }

    // The dial-up links no attempt list holds still hand the platform the account's data in its
    // order (L2TP's pre-shared key last).
    void dialUpLinksPassTheAccountData()
    {
        VpnServerInformation account = server("dial");
        account.sharedKey = "psk";
        m_platform->clearCalls();
        tavero::L2tpConnection l2tp(*m_platform);
        tavero::PptpConnection pptp(*m_platform);
        QCOMPARE(l2tp.name() + pptp.name(), QString("L2TPPPTP"));
        QVERIFY(l2tp.supports(account) && pptp.supports(account));
        QVERIFY(l2tp.canAsyncConnect() && pptp.canAsyncConnect());
        QVERIFY(l2tp.connect(account).isSuccess && pptp.connect(account).isSuccess);
        QVERIFY(l2tp.disconnect().isSuccess && pptp.disconnect().isSuccess);
        const auto calls = m_platform->calls();
        QCOMPARE(m_platform->callNames(), (QStringList{"isL2tpAsync", "isPptpAsync", "connectL2tp",
                                                       "connectPptp", "disconnect", "disconnect"}));
        QCOMPARE(calls[2].arguments, (QVariantList{"dial.vpn.example", "user", "secret", "psk"}));
        QCOMPARE(calls[3].arguments, (QVariantList{"dial.vpn.example", "user", "secret"}));
        account.hasAccountData = false;
        QVERIFY(!l2tp.supports(account) && !pptp.supports(account));
    }

    void requestsDuringAConnectAreRefused()
    {
        m_platform->holdConnects();
        OperationResult duringDisconnect(QString("not called"));
        OperationResult duringConnect(QString("not called"));
        // Acts from inside the running attempt once the IKEv2 dial is under way, as a user's
        // click delivered during the attempt's event processing would.
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, this, [&] {
            if (m_platform->callCount("connectIKEv2") == 0)
                return;
            poll.stop();
            duringDisconnect = chain().disconnect();
            duringConnect = chain().connect(server("fr-1"));
            m_platform->releaseConnects();
        });
        poll.start(5);
        const OperationResult result = chain().connect(server("de-1"));
        QCOMPARE(duringDisconnect.message, QString("Opening connection"));
        QCOMPARE(duringConnect.message, QString("Opening connection"));
        QVERIFY(result.isSuccess);
        QCOMPARE(chain().currentServer().name, QString("de-1"));
        QCOMPARE(m_platform->callCount("connectIKEv2"), 1);
        QVERIFY(!chain().isConnecting());
    }

    // Kill switch off: a NoNetwork break is asked about again with the tunnel still in place.
    // Kill switch on: the network is cut at once, before the tunnel goes, with no second question.
    void noNetworkBreak_data()
    {
        QTest::addColumn<bool>("killSwitch");
        QTest::newRow("still protected") << false;
        QTest::newRow("kill switch cuts at once") << true;
    }
    void noNetworkBreak()
    {
        QFETCH(bool, killSwitch);
        m_settings->setKillSwitch(killSwitch);
        m_settings->setProtocolTypes(IKEv2);
        QVERIFY(chain().connect(server("de-1")).isSuccess);
        const int teardowns = m_platform->callCount("disconnect");
        const int checks = m_api->calls("receiveIp");
        int teardownsWhileAsking = -1;
        m_api->onCall("receiveIp",
                      [&] { teardownsWhileAsking = m_platform->callCount("disconnect"); });
        QSignalSpy expired(&chain(), &ConnectionChain::protocolsExpired);
        if (killSwitch)
            QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        chain().onBreakDetected(ConnectionKeeper::NoNetwork);
        QCOMPARE(expired.count(), killSwitch ? 1 : 0);
        if (killSwitch) {
            QCOMPARE(m_api->calls("receiveIp"), checks);
            const QStringList calls = m_platform->callNames();
            QVERIFY(calls.lastIndexOf("turnOffInternet") < calls.lastIndexOf("disconnect"));
            QVERIFY(m_platform->isNetworkOff() && chain().isKillswitched());
            QCOMPARE(chain().mode(), ConnectionChain::Failed);
            QVERIFY(!chain().isReestablishScheduled());
        } else {
            QCOMPARE(teardownsWhileAsking, teardowns);
            QCOMPARE(m_platform->callCount("disconnect"), teardowns);
            QCOMPARE(chain().mode(), ConnectionChain::Connected);
            QTRY_VERIFY(m_api->calls("receiveIp") > checks + 1); // the keeper runs again
        }
    }

    // The user connects to another server while a break of the old tunnel is being handled
    // (during the second question, or as the handling reports Failed): the new tunnel is kept,
    // the network stays on, and the handling does not re-establish the old server.
    void connectDuringBreakHandlingWins_data()
    {
        QTest::addColumn<bool>("killSwitch");
        QTest::newRow("kill switch on") << true;
        QTest::newRow("kill switch off") << false;
    }
    void connectDuringBreakHandlingWins()
    {
        QFETCH(bool, killSwitch);
        m_settings->setKillSwitch(killSwitch);
        m_settings->setProtocolTypes(IKEv2);
        QVERIFY(chain().connect(server("de-1")).isSuccess);
        bool userActed = false;
        const auto userConnects = [&] {
            userActed = true;
            m_api->ipResult = ipAnswer(true);
            QVERIFY(chain().connect(server("fr-1")).isSuccess);
        };
        QObject context;
        if (killSwitch) {
            QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
            QObject::connect(&chain(), &ConnectionChain::modeChanged, &context, [&] {
                if (chain().mode() == ConnectionChain::Failed && !userActed)
                    userConnects();
            });
        } else {
            m_api->onCall("receiveIp", [&] {
                if (userActed)
                    return;
                userConnects();
                m_api->ipResult = ipAnswer(false, RequestResult::NoInternet); // the stale answer
            });
        }
        QSignalSpy expired(&chain(), &ConnectionChain::protocolsExpired);
        m_api->ipResult = ipAnswer(false, RequestResult::NoInternet);
        chain().onBreakDetected(ConnectionKeeper::NoNetwork);
        m_api->ipResult = ipAnswer(true);
        QVERIFY(userActed);
        QCOMPARE(chain().mode(), ConnectionChain::Connected);
        QCOMPARE(chain().currentServer().name, QString("fr-1"));
        QVERIFY(!m_platform->isNetworkOff());
        QVERIFY(expired.isEmpty());
        QCOMPARE(m_platform->callCount("connectIKEv2"), 2); // de-1 and the user's fr-1 only
    }
};

TAVERO_TEST_GUILESS_MAIN(TestConnectionChain)
#include "tst_connectionchain.moc"
