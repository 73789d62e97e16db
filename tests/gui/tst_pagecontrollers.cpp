#include "connection/connectionchain.h"
#include "gui/shell/logincontroller.h"
#include "gui/shell/statuscontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QApplication>
#include <QTranslator>
#include <memory>

using tavero::ConnectionChain;
using tavero::test::FakeViewManager;
using tavero::test::FakeViewManagerUtils;
using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;

namespace {

ServerListGettingResult twoServers()
{
    return ServerListMaker()
        .country(1, QStringLiteral("de"), QStringLiteral("Germany"))
        .server(1, QStringLiteral("de-1"), 10, true, true)
        .server(1, QStringLiteral("de-2"), 20, true, true)
        .list();
}

} // namespace

// The login, status and settings controllers over a real VPN manager (scripted service client
// and platform) and a recording view manager, with the English catalogue.
class TestPageControllers : public QObject {
    Q_OBJECT
    FakeViewManagerUtils& boxes() { return m_view->fakeUtils(); }
    tavero::VpnManager& manager() { return m_fixture->manager(); }

    QTranslator m_english;
    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<FakeViewManager> m_view;

    // Logs in and connects to de-1 through the controller.
    void connectToFirstServer(StatusController& controller)
    {
        QVERIFY(m_fixture->logIn());
        manager().vpnServers().setCurrServer(QStringLiteral("de-1"));
        controller.connect();
        QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
        QCOMPARE(boxes().boxes().size(), 0);
    }

    // Cuts the network the way the chain's kill switch does after a break.
    void cutNetworkByKillSwitch()
    {
        manager().settings().setKillSwitch(true);
        manager().killSwitcher().stopInternet();
        QVERIFY(manager().killSwitchWasDisconnectingTheInternet());
        m_fixture->platform().clearCalls();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_english.load(QStringLiteral(":/translations/eng")));
        QCoreApplication::installTranslator(&m_english);
    }

    void init()
    {
        m_fixture = std::make_unique<ManagerFixture>();
        m_fixture->answerReachable(twoServers(), twoServers());
        m_view = std::make_unique<FakeViewManager>();
    }

    void cleanup()
    {
        m_fixture.reset();
        m_view.reset();
    }

    void changeServerRemembersAndReportsRefreshFailure()
    {
        QVERIFY(m_fixture->logIn());
        StatusController controller(manager(), *m_view);
        controller.changeServer();
        QCOMPARE(controller.rememberedServerName(), QStringLiteral("de-1"));
        QCOMPARE(boxes().boxes().size(), 0);

        m_fixture->api().serverList = ServerListMaker().list(RequestResult::NoInternet);
        controller.changeServer();
        QCOMPARE(boxes().boxes().size(), 1);
        QCOMPARE(boxes().boxes().first().text,
                 QStringLiteral("Connection failed. Check network connection."));
    }

    void otherServerWhileConnectedReconnects()
    {
        StatusController controller(manager(), *m_view);
        connectToFirstServer(controller);
        controller.changeServer();
        manager().vpnServers().setCurrServer(QStringLiteral("de-2"));
        m_fixture->platform().clearCalls();
        controller.serverChanged();

        QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
        QCOMPARE(manager().connection().currentServer().name, QStringLiteral("de-2"));
        const QVector<tavero::test::TestPlatform::Call> calls = m_fixture->platform().calls();
        const auto dial = std::find_if(calls.cbegin(), calls.cend(), [](const auto& call) {
            return call.operation == QLatin1String("connectIKEv2");
        });
        QVERIFY(dial != calls.cend());
        QCOMPARE(dial->arguments.value(0).toString(), QStringLiteral("de-2.vpn.test"));
        // The old tunnel went down before the new one was dialled.
        QVERIFY(std::any_of(calls.cbegin(), dial, [](const auto& call) {
            return call.operation == QLatin1String("disconnect");
        }));
    }

    void connectFailureShowsOneBox_data()
    {
        QTest::addColumn<bool>("internet");
        QTest::addColumn<QString>("text");
        QTest::newRow("no network") << false << "Network unavailable";
        QTest::newRow("dial refused") << true << "Failed to connect via any protocols";
    }

    void connectFailureShowsOneBox()
    {
        QFETCH(bool, internet);
        QFETCH(QString, text);
        QVERIFY(m_fixture->logIn());
        m_fixture->api().internet = internet;
        m_fixture->platform().queueResult(QStringLiteral("connectIKEv2"),
                                          OperationResult(QStringLiteral("dial refused")));
        StatusController controller(manager(), *m_view);
        controller.connect();
        QCOMPARE(boxes().texts(), QStringList{text});
        QVERIFY(manager().connection().mode() != ConnectionChain::Connected);
    }

    void connectFailureAfterKillSwitchSuggestsAnotherServer()
    {
        QVERIFY(m_fixture->logIn());
        // The controller's own test sees the network; the chain's test a moment later does not.
        int probes = 0;
        m_fixture->api().onCall(QStringLiteral("isThereInternet"),
                                [&] { m_fixture->api().internet = ++probes == 1; });
        manager().setKillSwitchFlag(true);
        StatusController controller(manager(), *m_view);
        controller.connect();
        QCOMPARE(boxes().texts(), QStringList{QStringLiteral("Try to select another server")});

        // Without the kill switch having acted, the chain's own message is shown.
        boxes().clear();
        probes = 0;
        manager().setKillSwitchFlag(false);
        controller.connect();
        QCOMPARE(boxes().texts(),
                 QStringList{QStringLiteral("Connection failed. Check internet connection.")});
    }

    void connectRestoresNetworkCutByKillSwitchFirst()
    {
        QVERIFY(m_fixture->logIn());
        cutNetworkByKillSwitch();
        StatusController controller(manager(), *m_view);
        controller.connect();

        const QStringList calls = m_fixture->platform().callNames();
        QVERIFY2(calls.indexOf(QStringLiteral("turnOnInternet")) >= 0, qPrintable(calls.join(',')));
        QVERIFY(calls.indexOf(QStringLiteral("turnOnInternet")) <
                calls.indexOf(QStringLiteral("connectIKEv2")));
        QVERIFY(!m_fixture->platform().isNetworkOff());
        QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
        QCOMPARE(boxes().boxes().size(), 0);
    }

    void connectReportsBreakWhenNetworkStaysDown()
    {
        QVERIFY(m_fixture->logIn());
        cutNetworkByKillSwitch();
        m_fixture->platform().queueAnswer(QStringLiteral("turnOnInternet"), false);
        m_fixture->api().ipResult.isProtected = false;
        const int accountFetches = m_fixture->api().calls(QStringLiteral("receiveAccountInfo"));
        QSignalSpy expired(&manager().connection(), &ConnectionChain::protocolsExpired);
        StatusController controller(manager(), *m_view);
        controller.connect();

        // No new attempt: the chain judged the break, and with the kill switch on gave up.
        QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 0);
        QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveAccountInfo")), accountFetches);
        QCOMPARE(expired.count(), 1);
        QCOMPARE(manager().connection().mode(), ConnectionChain::Failed);
        QCOMPARE(boxes().boxes().size(), 0);
    }
};

TAVERO_TEST_GUI_MAIN(TestPageControllers)
#include "tst_pagecontrollers.moc"
