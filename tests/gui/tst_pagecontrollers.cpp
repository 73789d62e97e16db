#include "connection/connectionchain.h"
#include "gui/shell/logincontroller.h"
#include "gui/shell/settingscontroller.h"
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

    void loginRefusedShowsAuthorizationBox()
    {
        m_fixture->api().loginResult.status = RequestResult::ServerError;
        m_fixture->api().loginResult.message = QStringLiteral("invalid_user_credentials");
        LoginController controller(manager(), *m_view);

        QVERIFY(!controller.login(QStringLiteral("user@vpn.test"), QStringLiteral("wrong")));
        QCOMPARE(boxes().boxes().size(), 1);
        const FakeViewManagerUtils::Box box = boxes().boxes().first();
        QCOMPARE(box.kind, FakeViewManagerUtils::Kind::Warning);
        QCOMPARE(box.title, QStringLiteral("Authorization"));
        QCOMPARE(box.text, QStringLiteral("Wrong login or password."));
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(box.defaultButton, QMessageBox::NoButton);
        QVERIFY(m_view->currentPage().isEmpty());
    }

    void loginSuccessGoesToStatus()
    {
        LoginController controller(manager(), *m_view);
        QVERIFY(controller.login(QStringLiteral("user@vpn.test"), QStringLiteral("secret")));
        QCOMPARE(boxes().boxes().size(), 0);
        QCOMPARE(m_view->calls(), QStringList{QStringLiteral("goToStatus(true)")});
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
        QCOMPARE(boxes().boxes().first().title, QStringLiteral("TAVERO"));
        QCOMPARE(boxes().boxes().first().text,
                 QStringLiteral("Connection failed. Check network connection."));
        QCOMPARE(boxes().boxes().first().kind, FakeViewManagerUtils::Kind::Warning);
    }

    void sameServerWhileConnectedDoesNotReconnect()
    {
        StatusController controller(manager(), *m_view);
        connectToFirstServer(controller);
        controller.changeServer();
        const int dials = m_fixture->platform().callCount(QStringLiteral("connectIKEv2"));
        controller.serverChanged();
        QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), dials);
        QCOMPARE(m_fixture->platform().callCount(QStringLiteral("disconnect")) > 0, true);
        QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
    }

    void otherServerWhileDisconnectedDoesNotConnect()
    {
        QVERIFY(m_fixture->logIn());
        StatusController controller(manager(), *m_view);
        controller.changeServer();
        manager().vpnServers().setCurrServer(QStringLiteral("de-2"));
        controller.serverChanged();
        QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 0);
        QCOMPARE(manager().connection().mode(), ConnectionChain::Disconnected);
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

    void connectWithoutNetworkShowsBox()
    {
        QVERIFY(m_fixture->logIn());
        m_fixture->api().internet = false;
        StatusController controller(manager(), *m_view);
        const int accountFetches = m_fixture->api().calls(QStringLiteral("receiveAccountInfo"));
        controller.connect();
        QCOMPARE(boxes().texts(), QStringList{QStringLiteral("Network unavailable")});
        QCOMPARE(boxes().boxes().first().title, QStringLiteral("TAVERO"));
        QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveAccountInfo")), accountFetches);
        QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 0);
    }

    void connectFailureShowsChainMessage()
    {
        QVERIFY(m_fixture->logIn());
        m_fixture->platform().queueResult(QStringLiteral("connectIKEv2"),
                                          OperationResult(QStringLiteral("dial refused")));
        StatusController controller(manager(), *m_view);
        const int accountFetches = m_fixture->api().calls(QStringLiteral("receiveAccountInfo"));
        controller.connect();
        // Fresh VPN credentials were fetched before the attempt.
        QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveAccountInfo")), accountFetches + 1);
        QCOMPARE(manager().connection().mode(), ConnectionChain::Failed);
        QCOMPARE(boxes().boxes().size(), 1);
        QCOMPARE(boxes().boxes().first().title, QStringLiteral("TAVERO"));
        QCOMPARE(boxes().boxes().first().text,
                 QStringLiteral("Failed to connect via any protocols"));
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

    void disconnectFailureShowsBox()
    {
        StatusController controller(manager(), *m_view);
        connectToFirstServer(controller);
        m_fixture->platform().queueResult(QStringLiteral("disconnect"),
                                          OperationResult(QStringLiteral("cannot hang up")));
        controller.disconnect();
        QCOMPARE(boxes().texts(), QStringList{QStringLiteral("cannot hang up")});
        QCOMPARE(boxes().boxes().first().title, QStringLiteral("TAVERO"));
    }

    void navigationPassesThrough()
    {
        StatusController controller(manager(), *m_view);
        controller.showSettings();
        controller.showInformation();
        controller.goToServerSelection();
        QCOMPARE(m_view->calls(),
                 (QStringList{QStringLiteral("goToSettings"), QStringLiteral("goToInformation"),
                              QStringLiteral("goToServerSelection")}));
    }

    void fixSettings_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("fixed");

        QTest::newRow("two protocols") << int(OvpnTcp | OvpnUdp) << 31;
        QTest::newRow("one protocol") << int(OvpnTcp) << int(OvpnTcp);
    }

    void fixSettings()
    {
        QFETCH(int, stored);
        QFETCH(int, fixed);
        manager().settings().setProtocolTypes(QFlags<ProtocolType>(stored));
        SettingsController controller(manager(), *m_view);
        controller.fixSettings();
        QCOMPARE(int(manager().settings().protocolTypes()), fixed);
        // Stored, not just held: a fresh store reads the same.
        QCOMPARE(int(tavero::Settings().protocolTypes()), fixed);
    }

    void logOutKeepsEmail()
    {
        QVERIFY(m_fixture->logIn());
        SettingsController controller(manager(), *m_view);
        controller.logOut();
        tavero::Settings stored;
        QVERIFY(stored.token().isEmpty());
        QCOMPARE(stored.getEmail(), QStringLiteral("user@vpn.test"));
        QCOMPARE(m_view->calls(), QStringList{QStringLiteral("goToLogin")});
        // Nothing is left to log in with at the next start.
        QVERIFY(!manager().tryAutoLoginOnRestart());
    }
};

TAVERO_TEST_GUI_MAIN(TestPageControllers)
#include "tst_pagecontrollers.moc"
