#include "connection/connectionchain.h"
#include "gui/pages/serverselectionwidget.h"
#include "gui/pages/statuswidget.h"
#include "gui/shell/logincontroller.h"
#include "gui/shell/serverselectioncontroller.h"
#include "gui/shell/statuscontroller.h"
#include "manager/serverrowbuilder.h"
#include "manager/vpnmanager.h"
#include "platform/platformoverrides.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/messageboxdriver.h"
#include "support/pngbytes.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QMutex>
#include <QPushButton>
#include <QSet>
#include <QThread>
#include <QTranslator>
#include <QTreeWidget>
#include <memory>

using tavero::ConnectionChain;
using tavero::PlatformOverrides;
using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::MessageBoxDriver;
using tavero::test::ServerListMaker;

namespace {

QByteArray flagBytes()
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::blue);
    return tavero::test::pngBytes(image);
}

// A 1-pixel-high picture one wider than the code is long, so each row's flag is recognisable.
QImage rowFlag(const QString& code)
{
    QImage image(code.size() + 1, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

QString shared(const char* key)
{
    return QCoreApplication::translate("QObject", key);
}

} // namespace

// The status and server selection controllers, and the status and server pages over them, on a
// real VPN manager (scripted service client and platform) and a recording view manager, with the
// English catalogue; and the worker threads that build the server page's rows.
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
        // Germany: de-2, de-1, de-3 available in this reply order, plus de-9 unavailable; France:
        // one server; Netherlands: nothing available; Austria: no servers at all. The service
        // recommends de-3 for Germany although de-1 is less loaded.
        m_fixture->answerReachable(ServerListMaker()
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
                                       .list(),
                                   ServerListMaker()
                                       .country(13, "de", "Germany")
                                       .server(13, "de-3", 40, true, true)
                                       .list());
        m_fixture->api().flagPicture = flagBytes();
        m_view = std::make_unique<FakeViewManager>();
        m_status = std::make_unique<StatusController>(manager(), *m_view);
        m_servers = std::make_unique<ServerSelectionController>(manager(), *m_view);
        QVERIFY(m_fixture->logIn());
    }

    void cleanup()
    {
        PlatformOverrides::setAdministrator(std::nullopt);
        PlatformOverrides::setRdpListening(std::nullopt);
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

    // A failed connect shows one box. After the kill switch cut the network, connecting first
    // brings it back; when it stays down the chain judges the break and, with the kill switch
    // on, gives up without a new attempt or a box.
    void connectOutcomes_data()
    {
        QTest::addColumn<bool>("internet");
        QTest::addColumn<bool>("killSwitchFlag");
        QTest::addColumn<int>("cut"); // 0: network never cut, 1: comes back, 2: stays down
        QTest::addColumn<QString>("text");
        QTest::newRow("no network") << false << false << 0 << "Network unavailable";
        QTest::newRow("dial refused")
            << true << false << 0 << "Failed to connect via any protocols";
        // The controller's own test sees the network; the chain's test a moment later does not.
        QTest::newRow("network lost")
            << true << false << 0 << "Connection failed. Check internet connection.";
        QTest::newRow("network lost after the kill switch")
            << true << true << 0 << "Try to select another server";
        QTest::newRow("network cut, comes back") << true << false << 1 << QString();
        QTest::newRow("network cut, stays down") << true << false << 2 << QString();
    }
    void connectOutcomes()
    {
        QFETCH(bool, internet);
        QFETCH(bool, killSwitchFlag);
        QFETCH(int, cut);
        QFETCH(QString, text);
        m_fixture->api().internet = internet;
        if (QByteArray(QTest::currentDataTag()).startsWith("network lost")) {
            int probes = 0;
            m_fixture->api().onCall("isThereInternet", [this, probes]() mutable {
                m_fixture->api().internet = ++probes == 1;
            });
        }
        manager().setKillSwitchFlag(killSwitchFlag);
        if (cut == 0)
            m_fixture->platform().queueResult("connectIKEv2", OperationResult(QString("refused")));
        else
            cutNetworkByKillSwitch();
        if (cut == 2) {
            m_fixture->platform().queueAnswer(QStringLiteral("turnOnInternet"), false);
            m_fixture->api().ipResult.isProtected = false;
        }
        QSignalSpy expired(&manager().connection(), &ConnectionChain::protocolsExpired);
        m_status->connect();
        QCOMPARE(boxes(), text.isEmpty() ? QStringList() : QStringList{text});
        QCOMPARE(manager().connection().mode() == ConnectionChain::Connected, cut == 1);
        if (cut != 0) {
            const QStringList calls = m_fixture->platform().callNames();
            QCOMPARE(calls.first(), QStringLiteral("turnOnInternet"));
            QCOMPARE(calls.count("connectIKEv2"), cut == 1 ? 1 : 0);
            QCOMPARE(expired.count(), cut == 1 ? 0 : 1);
            QCOMPARE(manager().connection().mode(),
                     cut == 1 ? ConnectionChain::Connected : ConnectionChain::Failed);
        }
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
                                     << "de-3"; // the full list's is the server page's
        QTest::newRow("nothing available") << "nl" << QString();
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

    // A second click on "next server" while the first still waits for the list switches once;
    // the guard is released afterwards. In reply order de-1 is followed by de-3, then de-2; the
    // only server of its country stays.
    void statusPageSwitchesToTheNextServerOnce()
    {
        Gui::StatusWidget page(manager(), *m_status, *m_servers, m_view->fakeBubbles());
        manager().vpnServers().setCurrServer("de-1");
        page.fillUp();
        auto* next = page.findChild<QPushButton*>("pushButtonNextServer");
        QTest::mouseClick(page.findChild<QPushButton*>("pushButtonConnect"), Qt::LeftButton);
        const auto clickNext = [next] {
            QEvent enter(QEvent::Enter);
            QApplication::sendEvent(next, &enter);
            QTest::mouseClick(next, Qt::LeftButton);
        };
        int lists = 0;
        m_fixture->api().onCall("receiveServerList", [&] {
            if (lists++ == 0)
                QTest::mouseClick(next, Qt::LeftButton);
        });
        clickNext();
        QCOMPARE(lists, 1);
        QCOMPARE(manager().vpnServers().currServer().name, "de-3");
        clickNext();
        QCOMPARE(manager().vpnServers().currServer().name, "de-2");
        manager().vpnServers().setCurrServer("fr-1");
        m_servers->onSwitchToNextServer();
        QCOMPARE(manager().settings().serverName(), "fr-1");
        QTest::mouseClick(page.findChild<QPushButton*>("pushButtonDisconnect"), Qt::LeftButton);
        QCOMPARE(manager().connection().mode(), ConnectionChain::Disconnected);
    }

    // Questions of the status page: with a remote-desktop server listening, an IKEv2-only connect
    // without administrator rights (which takes the routes) asks first; a new protocol while
    // connected offers a reconnect. Either way the page waits exactly once per connect.
    void statusPageQuestions_data()
    {
        QTest::addColumn<bool>("administrator");
        QTest::addColumn<int>("protocols");
        QTest::addColumn<QString>("answer"); // empty: no question
        QTest::addColumn<bool>("protocolChange");
        const int ikev2 = int(ProtocolType::IKEv2);
        QTest::newRow("remote desktop: asked") << false << ikev2 << "action.continue" << false;
        QTest::newRow("remote desktop, administrator") << true << ikev2 << QString() << false;
        QTest::newRow("remote desktop, automatic protocol") << false << 31 << QString() << false;
        QTest::newRow("new protocol: reconnect") << true << 31 << "action.yes" << true;
        QTest::newRow("new protocol: stay") << true << 31 << "action.no" << true;
    }
    void statusPageQuestions()
    {
        QFETCH(bool, administrator);
        QFETCH(int, protocols);
        QFETCH(QString, answer);
        QFETCH(bool, protocolChange);
        Gui::StatusWidget page(manager(), *m_status, *m_servers, m_view->fakeBubbles());
        page.fillUp();
        manager().settings().setProtocolTypes(QFlags<ProtocolType>(protocols));
        PlatformOverrides::setAdministrator(administrator);
        PlatformOverrides::setRdpListening(!protocolChange);
        QSignalSpy stopped(&page, &Gui::AbstractContentPage::aboutToStopWaiting);
        MessageBoxDriver driver;
        if (!answer.isEmpty() && !protocolChange)
            driver.clickOnNextBox(shared(qPrintable(answer)));
        const int probes = m_fixture->api().calls("isThereInternet");
        QTest::mouseClick(page.findChild<QPushButton*>("pushButtonConnect"), Qt::LeftButton);
        // Answered or not asked, the connect goes ahead: it first asks whether there is a network.
        QVERIFY(m_fixture->api().calls("isThereInternet") > probes);
        QCOMPARE(stopped.count(), 1);
        if (protocolChange) {
            QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
            m_fixture->platform().clearCalls();
            driver.clickOnNextBox(shared(qPrintable(answer)));
            page.onSettedNewProtocol();
            const bool reconnects = answer == "action.yes";
            QCOMPARE(m_fixture->platform().callCount("disconnect"), reconnects ? 1 : 0);
            QCOMPARE(m_fixture->platform().callCount("connectIKEv2"), reconnects ? 1 : 0);
            QCOMPARE(manager().connection().mode(), ConnectionChain::Connected);
        }
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join("; ")));
        QCOMPARE(driver.seen().size(), answer.isEmpty() ? 0 : 1);
    }

    // The chain's reports reach the user as tray bubbles (none for a failed re-establishment),
    // with the page waiting while it re-establishes.
    void chainReportsBecomeBubbles()
    {
        Gui::StatusWidget page(manager(), *m_status, *m_servers, m_view->fakeBubbles());
        QSignalSpy stopped(&page, &Gui::AbstractContentPage::aboutToStopWaiting);
        emit manager().connection().protocolChanged();
        emit manager().connection().protocolsExpired();
        for (const bool success : {false, true}) {
            emit manager().connection().reestablishStarted();
            emit manager().connection().reestablishFinished(success);
        }
        QCOMPARE(stopped.count(), 2);
        QCOMPARE(m_view->fakeBubbles().texts().size(), 3);
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

    // Workers overlap while they append their rows: every row still arrives once, with its flag, in
    // name order with its servers in name order (whole records), built off this thread.
    void rowBuilderWorkersBuildTheirShare()
    {
        // Ids count down, so map order (ascending id) is the reverse of name order.
        ServerListMaker maker;
        const int countries = 45;
        for (int i = 0; i < countries; ++i) {
            maker.country(1000 - i, QStringLiteral("c%1").arg(i),
                          QStringLiteral("Country %1").arg(i, 3, 10, QLatin1Char('0')));
            maker.server(1000 - i, QStringLiteral("s%1-b").arg(i), 10)
                .server(1000 - i, QStringLiteral("s%1-a").arg(i), 20);
        }
        QMutex mutex;
        QSet<int> workers;
        QSet<Qt::HANDLE> threads;
        tavero::ServerRowBuilder builder([](const QString& code) {
            QThread::usleep(200); // slow flag loads
            return rowFlag(code);
        });
        builder.setRowObserver([&](int worker, int) {
            const QMutexLocker locker(&mutex);
            workers.insert(worker);
            threads.insert(QThread::currentThreadId());
        });
        const QVector<CountryPresentationData> rows = builder.build(maker.list());
        QVERIFY(workers.size() > 1);
        QVERIFY(!threads.contains(QThread::currentThreadId()));
        QCOMPARE(rows.size(), countries);
        for (int i = 0; i < rows.size(); ++i) {
            QCOMPARE(rows[i].flagImage.width(), rows[i].country.code.size() + 1);
            QCOMPARE(rows[i].servers.size(), 2);
            QCOMPARE(rows[i].servers[0].name, rows[i].country.code.mid(1).prepend('s') + "-a");
            QCOMPARE(rows[i].servers[0].load, 20);
            if (i > 0)
                QVERIFY(rows[i - 1].country.name < rows[i].country.name);
        }
        QVERIFY(builder.build(ServerListMaker().list()).isEmpty());
    }
};

TAVERO_TEST_GUI_MAIN(TestPageControllers)
#include "tst_pagecontrollers.moc"
