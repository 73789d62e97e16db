#include "app/languagemaster.h"
#include "gui/pages/settingsdialog.h"
#include "gui/shell/controllerinjector.h"
#include "gui/shell/mainwindow.h"
#include "gui/shell/viewmanager.h"
#include "gui/shell/viewmanagerutils.h"
#include "manager/vpnmanager.h"
#include "support/managerfixture.h"
#include "support/messageboxdriver.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QTimer>

using tavero::ConnectionChain;
using tavero::test::ManagerFixture;
using tavero::test::MessageBoxDriver;
using tavero::test::ServerListMaker;

// The view manager and its window over a VPN manager whose service and platform are scripted: the
// reactions to the chain and the settings dialog, the exit, and the wait cursor of its utilities.
class TestViewManager : public QObject {
    Q_OBJECT

    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<tavero::LanguageMaster> m_languages;
    std::unique_ptr<ViewManager> m_views;
    std::shared_ptr<ControllerInjector> m_injector;

    tavero::VpnManager& manager() { return m_fixture->manager(); }
    MainWindow& window() { return *m_views->window(); }

private slots:
    void init()
    {
        m_fixture = std::make_unique<ManagerFixture>();
        const ServerListGettingResult list =
            ServerListMaker().country(1, "de", "Germany").server(1, "de-1", 20, true, true).list();
        m_fixture->answerReachable(list, list);
        QVERIFY(m_fixture->logIn());
        m_languages = std::make_unique<tavero::LanguageMaster>(manager().settings());
        m_views = std::make_unique<ViewManager>(manager(), *m_languages);
        m_injector = std::make_shared<ControllerInjector>(manager(), *m_views);
        m_views->setControllerInjector(m_injector);
    }
    void cleanup()
    {
        m_injector.reset();
        m_views.reset();
        m_languages.reset();
        m_fixture.reset();
        // An exit that went through asked the application to quit; until an exec() returns,
        // every nested event loop of the next test would end at once.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }

    void chainGiveUpWarnsOrReportsTheKillSwitch()
    {
        ConnectionChain& chain = manager().connection();
        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        emit chain.protocolsExpired();
        QCOMPARE(driver.seen().at(0).text, "warning.connection_problems_check_internet_connection");
        QVERIFY(!manager().isKillSwitchWasLastTime());

        manager().settings().setKillSwitch(true);
        for (const char* expected :
             {"body.kill_switch_triggered", "body.kill_switch_triggered_second_time"}) {
            driver.clickOnNextBox("OK");
            emit chain.protocolsExpired();
            QCOMPARE(driver.seen().last().text, QString(expected));
            QVERIFY(manager().isKillSwitchWasLastTime());
        }
        // A verified tunnel (or another server) starts the count again.
        QVERIFY(m_fixture->connect());
        QVERIFY(!manager().isKillSwitchWasLastTime());
        manager().setKillSwitchFlag(true);
        emit manager().vpnServers().serverWasChanged();
        QVERIFY(!manager().isKillSwitchWasLastTime());
        QVERIFY(driver.failures().isEmpty());
    }

    void killSwitchOffOffersToEnableAdapters()
    {
        tavero::test::TestPlatform& platform = m_fixture->platform();
        MessageBoxDriver driver;
        emit m_views->settingsDialog()->killSwitchChangState(0); // nothing switched off: no box
        QVERIFY(platform.turnOffInternet().isSuccess);
        emit m_views->settingsDialog()->killSwitchChangState(2); // switched on: no box
        QVERIFY(driver.seen().isEmpty());

        driver.clickOnNextBox("action.no");
        emit m_views->settingsDialog()->killSwitchChangState(0);
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(platform.callCount("turnOnNetDevices"), 0);
        QVERIFY(platform.isNetworkOff());

        driver.clickOnNextBox("action.yes");
        emit m_views->settingsDialog()->killSwitchChangState(0);
        QCOMPARE(platform.callCount("turnOnNetDevices"), 1);
        QVERIFY(!platform.isNetworkOff());
    }

    // Confirmed while connected (the question and its Cancel are tst_programflow's), refused
    // disconnects are retried until one goes through, and further exit requests are ignored
    // meanwhile.
    void exitRetriesARefusedDisconnect()
    {
        QVERIFY(m_fixture->connect());
        window().onPreloadFinished();
        tavero::test::TestPlatform& platform = m_fixture->platform();
        platform.clearCalls();
        platform.queueResult("disconnect", OperationResult(QString("busy")));
        platform.queueResult("disconnect", OperationResult(QString("busy")));
        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        window().exitFromProgramm();
        QVERIFY(window().isExitFromProgramProcessing());
        QVERIFY(!manager().isProgrammTermination());
        window().exitFromProgramm();
        QTRY_VERIFY(manager().isProgrammTermination());
        QCOMPARE(platform.callCount("disconnect"), 3);
        QCOMPARE(driver.seen().size(), 1);
        QVERIFY(driver.failures().isEmpty());
    }

    // Minimised, the window leaves the taskbar for the tray, which brings it back; without a
    // tray the taskbar button is the only way back, so it stays.
    void minimiseToTheTrayAndBack_data()
    {
        QTest::addColumn<bool>("tray");
        QTest::newRow("tray") << true;
        QTest::newRow("no tray") << false;
    }
    void minimiseToTheTrayAndBack()
    {
        QFETCH(bool, tray);
        MainWindow::overrideTrayAvailable(tray);
        window().trayIcon().show();
        window().show();
        window().setWindowState(Qt::WindowMinimized);
        const bool hidden = window().parentWidget() != nullptr && !window().isVisible();
        emit window().trayIcon().activated(QSystemTrayIcon::Trigger);
        MainWindow::overrideTrayAvailable(std::nullopt);
        QCOMPARE(hidden, tray);
        QCOMPARE(window().parentWidget(), nullptr);
        QVERIFY(window().isVisible());
        QCOMPARE(window().windowState() & Qt::WindowMinimized, Qt::WindowStates());
    }

    // Nested waits keep the page disabled until the outermost restore; the page may change (a
    // log-in that ends on the status page) or die meanwhile, and the one disabled at the start
    // still comes back; destruction ends an open wait.
    void waitCursorRestoresThePageItDisabled()
    {
        QWidget login;
        QWidget status;
        {
            ViewManagerUtils utils;
            utils.setParentForMessages(&login);
            utils.showWaitCursor(true);
            utils.showWaitCursor(true);
            QVERIFY(!login.isEnabled());
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
            utils.setParentForMessages(&status);
            utils.restoreCursor();
            QVERIFY(!login.isEnabled());
            utils.restoreCursor();
            QVERIFY(login.isEnabled() && status.isEnabled());
            QVERIFY(!QApplication::overrideCursor());

            auto dying = std::make_unique<QWidget>();
            utils.setParentForMessages(dying.get());
            utils.showWaitCursor(true);
            dying.reset();
            QVERIFY(!utils.parentForMessages());
            utils.restoreCursor();
            QCOMPARE(utils.waitCursorDepth(), 0);

            utils.setParentForMessages(&status);
            utils.showWaitCursor(true);
            utils.showWaitCursor(false);
        }
        QVERIFY(status.isEnabled());
        QVERIFY(!QApplication::overrideCursor());
    }
};

TAVERO_TEST_GUI_MAIN(TestViewManager)
#include "tst_viewmanager.moc"
