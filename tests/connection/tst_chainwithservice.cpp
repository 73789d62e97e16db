#include "api/serverapi.h"
#include "app/settings.h"
#include "connection/connectionchain.h"
#include "connection/killswitcher.h"
#include "platform/platformoverrides.h"
#include "support/devservice.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <memory>

using tavero::ConnectionChain;
using tavero::KillSwitcher;
using tavero::PlatformOverrides;
using tavero::ServerApi;
using tavero::Settings;
using tavero::test::DevService;
using tavero::test::TestPlatform;

// The real chain against the development service over HTTPS, with the OpenVPN stand-in holding
// its tunnel connection to the service: the service then reports the address as protected. Only
// the machine's network switch and the dial-up protocols are scripted. (The ordinary connect,
// break and re-establish flow runs through tavero-cli in tst_cliconnect.)
class TestChainWithService : public QObject {
    Q_OBJECT

    QTemporaryDir m_programDir;

private slots:
    void initTestCase()
    {
        QVERIFY(QFile::link(qEnvironmentVariable("TAVERO_FAKE_OPENVPN"),
                            m_programDir.path() + "/openvpn"));
        PlatformOverrides::setAdministrator(true);
        PlatformOverrides::setRdpListening(false);
    }

    void deadTunnelCutsTheNetworkAtOnce()
    {
        DevService service;
        QVERIFY2(service.isRunning(), qPrintable(service.errorText()));
        qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", "success");
        qputenv("TAVERO_FAKE_OPENVPN_TUNNEL",
                QString("%1:%2").arg(service.tunnelHost()).arg(service.tunnelPort()).toUtf8());
        ServerApi::resetSharedCaches();
        ServerApi api(service.endpoints());
        QCOMPARE(api.loginByEmail(service.account(0).email, service.account(0).password).status, 0);
        QVERIFY(api.receiveAccountInfo().hasVPNData());
        const ServerListGettingResult list = api.receiveServerList();
        QCOMPARE(list.status, 0);
        VpnServerInformation target;
        for (const auto& servers : list.serversByCountry) {
            for (const auto& server : servers) {
                if (server.hasOvpnConfig && target.name.isEmpty())
                    target = server;
            }
        }
        QVERIFY(!target.name.isEmpty());

        TestPlatform platform;
        Settings settings; // all protocols: IKEv2 dials (scripted) but never verifies
        KillSwitcher killSwitcher(api, platform, settings);
        ConnectionChain::Options options;
        options.openVpnDirectory = m_programDir.path();
        options.keeperIntervalMs = 100;
        options.reestablishIntervalMs = 500;
        ConnectionChain chain(api, platform, settings, killSwitcher, options);

        // OpenVPN ends under a verified tunnel while the IP check hangs, as one riding a
        // kept-alive connection through the dead tunnel would: the kill switch must not wait for
        // that answer.
        settings.setKillSwitch(true);
        QVERIFY(chain.connect(target).isSuccess);
        const int hangMs = 10000;
        QVERIFY(service.delayNext("/json", 2, hangMs));
        QElapsedTimer sinceDrop;
        qint64 failedAfterMs = -1;
        connect(&chain, &ConnectionChain::modeChanged, this, [&] {
            if (chain.mode() == ConnectionChain::Failed && failedAfterMs < 0)
                failedAfterMs = sinceDrop.elapsed();
        });
        sinceDrop.start();
        QVERIFY(service.dropTunnels());
        QTRY_VERIFY_WITH_TIMEOUT(failedAfterMs >= 0, 3 * hangMs);
        QVERIFY2(failedAfterMs < hangMs, "the kill switch waited for the hanging IP check");
        QVERIFY(platform.isNetworkOff());
        QVERIFY(service.openTunnels().isEmpty());
    }
};

TAVERO_TEST_GUILESS_MAIN(TestChainWithService)
#include "tst_chainwithservice.moc"
