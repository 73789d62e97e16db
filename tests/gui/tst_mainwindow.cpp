#include "gui/pages/abstractcontentpage.h"
#include "gui/pages/waitingplate.h"
#include "gui/shell/mainwindow.h"
#include "manager/vpnmanager.h"
#include "support/managerfixture.h"
#include "support/maptranslator.h"
#include "support/messageboxdriver.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QAction>
#include <QMenu>
#include <QStackedWidget>
#include <QTimer>

using tavero::ConnectionChain;
using tavero::test::ManagerFixture;
using tavero::test::MapTranslator;
using tavero::test::MessageBoxDriver;
using tavero::test::ServerListMaker;

namespace {

ServerListGettingResult germanServers()
{
    return ServerListMaker()
        .country(1, QStringLiteral("de"), QStringLiteral("Germany"))
        .server(1, QStringLiteral("de-1"), 20, true, true)
        .list();
}

QString menuText(MainWindow& window, int index)
{
    return window.trayIcon().contextMenu()->actions().at(index)->text();
}

} // namespace

// The window and tray over a VPN manager whose service and platform are scripted.
class TestMainWindow : public QObject {
    Q_OBJECT

    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<MainWindow> m_window;

    bool connectTunnel()
    {
        m_fixture->answerReachable(germanServers(), germanServers());
        return m_fixture->logIn() && m_fixture->connect();
    }

private slots:
    void init()
    {
        m_fixture = std::make_unique<ManagerFixture>();
        m_window = std::make_unique<MainWindow>(m_fixture->manager());
    }
    void cleanup()
    {
        m_window.reset();
        m_fixture.reset();
        // An exit that went through asked the application to quit; until an exec() returns,
        // every nested event loop of the next test would end at once.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }

    void trayConnectEntryFollowsModeAndLanguage()
    {
        QMenu* menu = m_window->trayIcon().contextMenu();
        emit menu->aboutToShow();
        QCOMPARE(menuText(*m_window, 0), QString("action.connect"));

        QVERIFY(connectTunnel());
        QCOMPARE(m_fixture->manager().connection().mode(), ConnectionChain::Connected);
        emit menu->aboutToShow();
        QCOMPARE(menuText(*m_window, 0), QString("action.disconnect"));

        MapTranslator german;
        german.add("MainWindow", "action.disconnect", "Trennen")
            .add("MainWindow", "action.connect", "Verbinden")
            .add("MainWindow", "action.exit", "Beenden")
            .add("QObject", "action.exit", "wrong context");
        QCoreApplication::installTranslator(&german);
        m_window->retranslateTrayMenu();
        // Still connected: the entry must not fall back to its stored "connect" key.
        QCOMPARE(menuText(*m_window, 0), QString("Trennen"));
        QCOMPARE(menuText(*m_window, 5), QString("Beenden"));
        QCOMPARE(menu->actions().at(5)->data().toString(), QString("action.exit"));

        QVERIFY(m_fixture->manager().disconnect().isSuccess);
        emit menu->aboutToShow();
        QCOMPARE(menuText(*m_window, 0), QString("Verbinden"));
        QCoreApplication::removeTranslator(&german);
    }

    void exitCancelKeepsRunningAndAsksAgain()
    {
        m_window->onPreloadFinished();
        MessageBoxDriver driver;
        driver.clickOnNextBox("action.cancel");
        m_window->close();
        QCOMPARE(driver.seen().size(), 1);
        QVERIFY(!m_window->isExitFromProgramProcessing());
        QVERIFY(!m_fixture->manager().isProgrammTermination());

        driver.clickOnNextBox("action.cancel");
        m_window->exitFromProgramm();
        QCOMPARE(driver.seen().size(), 2);
        QVERIFY(driver.failures().isEmpty());
        QVERIFY(!m_fixture->manager().isProgrammTermination());
    }

    void exitWhileConnectedWarnsAndRetriesTheDisconnect()
    {
        QVERIFY(connectTunnel());
        m_window->onPreloadFinished();
        tavero::test::TestPlatform& platform = m_fixture->platform();
        platform.clearCalls();
        platform.queueResult("disconnect", OperationResult(QString("busy")));
        platform.queueResult("disconnect", OperationResult(QString("busy")));

        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        m_window->exitFromProgramm();
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(driver.seen().at(0).text, QString("warning.vpn_is_connected_confirm_exit"));
        // Two refused disconnects, then the third goes through and the programme ends.
        QVERIFY(m_window->isExitFromProgramProcessing());
        QVERIFY(!m_fixture->manager().isProgrammTermination());
        QTRY_VERIFY(m_fixture->manager().isProgrammTermination());
        QCOMPARE(platform.callCount("disconnect"), 3);
        // Further requests are ignored once the exit runs.
        m_window->exitFromProgramm();
        QCOMPARE(driver.seen().size(), 1);
    }

    void pagesDriveTheWaitingPlate()
    {
        Gui::AbstractContentPage first;
        Gui::AbstractContentPage second;
        auto* plate = new Gui::WaitingPlate();
        m_window->setWaitingPlate(plate);
        QCOMPARE(plate->parentWidget(), m_window.get());
        QVERIFY(plate->isHidden());

        m_window->setContent(&first);
        m_window->setContent(&second);
        m_window->setContent(&second); // connections stay unique
        auto* stack = m_window->findChild<QStackedWidget*>("stackedWidget");
        QVERIFY(stack);
        QCOMPARE(stack->count(), 1);
        QCOMPARE(stack->currentWidget(), &second);
        QCOMPARE(second.palette().color(QPalette::Window), QColor(Qt::white));

        QSignalSpy colour(m_window.get(), &MainWindow::topCenterColorChanged);
        m_window->show();
        second.startWaiting();
        QVERIFY(plate->isVisible());
        QCOMPARE(colour.count(), 1);
        m_window->resize(400, 600);
        QCOMPARE(plate->size(), m_window->size());
        second.stopWaiting();
        QVERIFY(plate->isHidden());
        QCOMPARE(colour.count(), 2);
        m_window->setContent(nullptr);
        QCOMPARE(stack->count(), 0);
    }
};

TAVERO_TEST_GUI_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
