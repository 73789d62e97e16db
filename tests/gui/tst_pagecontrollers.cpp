#include "connection/connectionchain.h"
#include "gui/pages/serverselectionwidget.h"
#include "gui/shell/logincontroller.h"
#include "gui/shell/serverselectioncontroller.h"
#include "gui/shell/statuscontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/pngbytes.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QTranslator>
#include <QTreeWidget>
#include <memory>

using tavero::ConnectionChain;
using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;

namespace {

// Germany: de-2, de-1, de-3 available in this reply order, plus de-9 unavailable; France: one
// server; Netherlands: nothing available; Austria: no servers at all. The service recommends
// de-3 for Germany although de-1 is less loaded.
ServerListGettingResult fullList()
{
    return ServerListMaker()
        .country(13, "de", "Germany")
        .country(15, "fr", "France")
        .country(20, "nl", "Netherlands")
        .country(21, "at", "Austria")
        .server(13, "de-2", 30)
        .server(13, "de-1", 20)
        .server(13, "de-9", 0, false)
        .server(13, "de-3", 40)
        .server(15, "fr-1", 0)
        .server(20, "nl-1", 5, false)
        .list();
}

ServerListGettingResult recommendedList()
{
    return ServerListMaker().country(13, "de", "Germany").server(13, "de-3", 40, true, true).list();
}

QByteArray flagBytes()
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::blue);
    return tavero::test::pngBytes(image);
}

} // namespace

// The status and server selection controllers over a real VPN manager (scripted service client
// and platform) and a recording view manager, with the English catalogue.
class TestPageControllers : public QObject {
    Q_OBJECT
    tavero::VpnManager& manager() { return m_fixture->manager(); }
    QStringList boxes() { return m_view->fakeUtils().texts(); }

    QTranslator m_english;
    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<FakeViewManager> m_view;
    std::unique_ptr<StatusController> m_status;
    std::unique_ptr<ServerSelectionController> m_servers;

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
        m_fixture->answerReachable(fullList(), recommendedList());
        m_fixture->api().flagPicture = flagBytes();
        m_view = std::make_unique<FakeViewManager>();
        m_status = std::make_unique<StatusController>(manager(), *m_view);
        m_servers = std::make_unique<ServerSelectionController>(manager(), *m_view);
        QVERIFY(m_fixture->logIn());
    }

    void cleanup()
    {
        m_servers.reset();
        m_status.reset();
        m_view.reset();
        m_fixture.reset();
    }

    void otherServerWhileConnectedReconnects()
    {
        manager().vpnServers().setCurrServer(QStringLiteral("de-1"));
        m_status->connect();
        QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
        m_status->changeServer();
        QCOMPARE(m_status->rememberedServerName(), QStringLiteral("de-1"));
        manager().vpnServers().setCurrServer(QStringLiteral("de-2"));
        m_fixture->platform().clearCalls();
        m_status->serverChanged();

        QCOMPARE(manager().connection().currentServer().name, QStringLiteral("de-2"));
        QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
        // The old tunnel went down before the new one was dialled.
        const QStringList calls = m_fixture->platform().callNames();
        QVERIFY(calls.indexOf("disconnect") >= 0);
        QVERIFY(calls.indexOf("disconnect") < calls.indexOf("connectIKEv2"));
        QCOMPARE(m_fixture->platform().calls().at(calls.indexOf("connectIKEv2")).arguments.value(0),
                 QVariant("de-2.vpn.test"));
        QVERIFY(boxes().isEmpty());

        // A failed refresh of the list is shown.
        m_fixture->api().serverList = ServerListMaker().list(RequestResult::NoInternet);
        m_status->changeServer();
        QCOMPARE(boxes(), QStringList{"Connection failed. Check network connection."});
    }

    void connectFailureShowsOneBox_data()
    {
        QTest::addColumn<bool>("internet");
        QTest::addColumn<bool>("killSwitchFlag");
        QTest::addColumn<QString>("text");
        QTest::newRow("no network") << false << false << "Network unavailable";
        QTest::newRow("dial refused") << true << false << "Failed to connect via any protocols";
        // The controller's own test sees the network; the chain's test a moment later does not.
        QTest::newRow("network lost")
            << true << false << "Connection failed. Check internet connection.";
        QTest::newRow("network lost after the kill switch")
            << true << true << "Try to select another server";
    }

    void connectFailureShowsOneBox()
    {
        QFETCH(bool, internet);
        QFETCH(bool, killSwitchFlag);
        QFETCH(QString, text);
        m_fixture->api().internet = internet;
        if (QByteArray(QTest::currentDataTag()).startsWith("network lost")) {
            int probes = 0;
            m_fixture->api().onCall("isThereInternet", [this, probes]() mutable {
                m_fixture->api().internet = ++probes == 1;
            });
        }
        manager().setKillSwitchFlag(killSwitchFlag);
        m_fixture->platform().queueResult("connectIKEv2", OperationResult(QString("refused")));
        m_status->connect();
        QCOMPARE(boxes(), QStringList{text});
        QVERIFY(manager().connection().mode() != ConnectionChain::Connected);
    }

    // After the kill switch cut the network, connecting first brings it back; when it stays down
    // the chain judges the break and, with the kill switch on, gives up without a new attempt.
    void connectAfterKillSwitch_data()
    {
        QTest::addColumn<bool>("networkComesBack");
        QTest::newRow("network back") << true;
        QTest::newRow("network stays down") << false;
    }

    void connectAfterKillSwitch()
    {
        QFETCH(bool, networkComesBack);
        cutNetworkByKillSwitch();
        if (!networkComesBack) {
            m_fixture->platform().queueAnswer(QStringLiteral("turnOnInternet"), false);
            m_fixture->api().ipResult.isProtected = false;
        }
        QSignalSpy expired(&manager().connection(), &ConnectionChain::protocolsExpired);
        m_status->connect();

        const QStringList calls = m_fixture->platform().callNames();
        QCOMPARE(calls.first(), QStringLiteral("turnOnInternet"));
        QCOMPARE(calls.count("connectIKEv2"), networkComesBack ? 1 : 0);
        QCOMPARE(expired.count(), networkComesBack ? 0 : 1);
        QCOMPARE(manager().connection().mode(),
                 networkComesBack ? ConnectionChain::Connected : ConnectionChain::Failed);
        QVERIFY(boxes().isEmpty());
    }

    // While the kill switch holds the network, the server page works from the lists it has.
    void serverListsWhileKillSwitchHoldsNetwork()
    {
        manager().settings().setKillSwitch(true);
        manager().killSwitcher().stopInternet();
        m_fixture->api().serverList = ServerListMaker().list(RequestResult::NoInternet);
        m_fixture->api().recommendedServerList = ServerListMaker().list(RequestResult::NoInternet);
        const int exchanges = m_fixture->exchanges() - m_fixture->api().flagCalls();
        const ServersPresentationData data = m_servers->receiveServers();
        QCOMPARE(m_fixture->exchanges() - m_fixture->api().flagCalls(), exchanges);
        QCOMPARE(data.all.size(), 3);
        QCOMPARE(data.recommended.size(), 1);
    }

    void undecodableFlagGivesNullImage()
    {
        m_fixture->api().flagPicture = QByteArrayLiteral("not a picture");
        QVERIFY(m_servers->countryPixmapFromCode(QStringLiteral("de")).isNull());
        m_fixture->api().flagPicture.clear();
        QVERIFY(m_servers->countryPixmapFromCode(QStringLiteral("de")).isNull());
        m_fixture->api().flagPicture = flagBytes();
        QCOMPARE(m_servers->countryPixmapFromCode(QStringLiteral("de")).size(), QSize(4, 3));
    }

    // A country's recommended server wins over a less loaded one of the full list; a country
    // without an available server gets a box and changes nothing.
    void countrySelection_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("chosen"); // empty: refused with a box
        QTest::newRow("recommended") << "de"
                                     << "de-3";
        QTest::newRow("full list") << "fr"
                                   << "fr-1";
        QTest::newRow("nothing available") << "nl" << QString();
        QTest::newRow("no servers") << "at" << QString();
        QTest::newRow("unknown country") << "zz" << QString();
    }

    void countrySelection()
    {
        QFETCH(QString, code);
        QFETCH(QString, chosen);
        const QString before = manager().settings().serverName();
        QSignalSpy changed(&manager().vpnServers(), &tavero::VpnServerSelector::serverWasChanged);
        m_servers->onCountrySelection(code);

        QCOMPARE(manager().settings().serverName(), chosen.isEmpty() ? before : chosen);
        QCOMPARE(changed.count(), chosen.isEmpty() ? 0 : 1);
        QCOMPARE(boxes().size(), chosen.isEmpty() ? 1 : 0);
        QCOMPARE(m_view->currentPage(), chosen.isEmpty() ? QString() : "goToStatus(false)");
    }

    void switchToNextServer_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("next");

        // Available servers in reply order: de-2, de-1, de-3 (de-9 is unavailable).
        QTest::newRow("first to second") << QStringLiteral("de-2") << QStringLiteral("de-1");
        QTest::newRow("second to third") << QStringLiteral("de-1") << QStringLiteral("de-3");
        QTest::newRow("third wraps to first") << QStringLiteral("de-3") << QStringLiteral("de-2");
        QTest::newRow("only server of its country")
            << QStringLiteral("fr-1") << QStringLiteral("fr-1");
    }

    void switchToNextServer()
    {
        QFETCH(QString, current);
        QFETCH(QString, next);
        manager().vpnServers().setCurrServer(current);
        m_servers->onSwitchToNextServer();
        QCOMPARE(manager().settings().serverName(), next);
        QVERIFY(m_view->calls().isEmpty());
    }

    // The server page over the controller: fresh loads reach the rows shown, choosing a row
    // selects its country and returns to the status page.
    void serverPageSelectsTheChosenRow()
    {
        Gui::ServerSelectionWidget page(manager(), *m_servers);
        page.fillUp();
        auto* tree = page.findChild<QTreeWidget*>("treeServers");
        QVERIFY(tree);
        QTreeWidgetItem* france = nullptr;
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            if (tree->topLevelItem(i)->text(1).contains("France"))
                france = tree->topLevelItem(i);
        }
        QVERIFY(france);
        QVERIFY(QMetaObject::invokeMethod(&page, "updateServersLoading"));
        QCOMPARE(france->text(2), "0%");
        tree->setCurrentItem(france);
        QCOMPARE(manager().settings().serverName(), "fr-1");
        QCOMPARE(m_view->currentPage(), "goToStatus(false)");
        QVERIFY(QMetaObject::invokeMethod(&page, "onGoToBack"));
    }

    // A refused disconnect and a refused log-in are shown.
    void refusalsAreShown()
    {
        QVERIFY(m_fixture->connect());
        m_fixture->platform().queueResult("disconnect", OperationResult(QString("busy")));
        m_status->disconnect();
        m_fixture->api().loginResult.status = RequestResult::ServerError;
        m_fixture->api().loginResult.message = QStringLiteral("invalid_user_credentials");
        LoginController login(manager(), *m_view);
        QVERIFY(!login.login(QStringLiteral("user@vpn.test"), QStringLiteral("wrong")));
        QCOMPARE(boxes().size(), 2);
        QCOMPARE(boxes().last(), QStringLiteral("Wrong login or password."));
    }
};

TAVERO_TEST_GUI_MAIN(TestPageControllers)
#include "tst_pagecontrollers.moc"
