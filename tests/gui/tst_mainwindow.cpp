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

QImage iconImage(const QIcon& icon)
{
    return icon.pixmap(16, 16).toImage();
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

    void startsDisconnectedWithoutMaximise()
    {
        QCOMPARE(m_window->windowTitle(), QString("TAVERO"));
        QCOMPARE(m_window->trayIcon().toolTip(), QString("TAVERO - title.disconnected"));
        QCOMPARE(iconImage(m_window->trayIcon().icon()),
                 iconImage(QIcon(":/pictures/tray_icon/logo-disconnected.png")));
        QVERIFY(!(m_window->windowFlags() & Qt::WindowMaximizeButtonHint));
        QVERIFY(m_window->windowFlags() & Qt::WindowMinimizeButtonHint);
        QStringList keys;
        for (QAction* action : m_window->trayIcon().contextMenu()->actions())
            keys << (action->isSeparator() ? QString("-") : action->data().toString());
        QCOMPARE(keys, QStringList({"action.connect", "-", "action.show_attachment",
                                    "action.settings", "-", "action.exit"}));
    }

    void stateTitles_data()
    {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("tooltip");
        QTest::addColumn<QString>("icon");
        QTest::newRow("connecting") << QStringList{"connecting"} << "TAVERO - title.connecting"
                                    << "TAVERO - title.connecting"
                                    << ":/pictures/tray_icon/logo-connecting.png";
        QTest::newRow("connected") << QStringList{"connecting", "connected:Germany"}
                                   << "TAVERO (Germany) - title.connected"
                                   << "TAVERO - title.connected"
                                   << ":/pictures/tray_icon/logo-connected.png";
        QTest::newRow("disconnected after a country")
            << QStringList{"connected:Germany", "disconnected"}
            << "TAVERO (Germany) - title.disconnected"
            << "TAVERO - title.disconnected"
            << ":/pictures/tray_icon/logo-disconnected.png";
        QTest::newRow("disconnected, no country yet")
            << QStringList{"disconnected"} << "TAVERO - title.disconnected"
            << "TAVERO - title.disconnected"
            << ":/pictures/tray_icon/logo-disconnected.png";
        QTest::newRow("remembered country shows only on the next state")
            << QStringList{"remember:France", "disconnected"}
            << "TAVERO (France) - title.disconnected"
            << "TAVERO - title.disconnected"
            << ":/pictures/tray_icon/logo-disconnected.png";
    }
    void stateTitles()
    {
        QFETCH(QStringList, steps);
        for (const QString& step : steps) {
            if (step == "connecting")
                m_window->onConnecting();
            else if (step == "disconnected")
                m_window->onDisconnected();
            else if (step.startsWith("connected:"))
                m_window->onConnected(step.section(':', 1));
            else if (step.startsWith("remember:")) {
                m_window->setLastConnectedCountry(step.section(':', 1));
                QCOMPARE(m_window->windowTitle(), QString("TAVERO"));
            }
        }
        QTEST(m_window->windowTitle(), "title");
        QTEST(m_window->trayIcon().toolTip(), "tooltip");
        QFETCH(QString, icon);
        QCOMPARE(iconImage(m_window->trayIcon().icon()), iconImage(QIcon(icon)));
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

    void connectEntryVisibilityHidesItsSeparator()
    {
        const QList<QAction*> actions = m_window->trayIcon().contextMenu()->actions();
        m_window->setConnectActionVisibility(false);
        QVERIFY(!m_window->connectActionVisibility());
        QVERIFY(!actions.at(1)->isVisible());
        QVERIFY(actions.at(2)->isVisible());
        m_window->setConnectActionVisibility(true);
        QVERIFY(m_window->connectActionVisibility());
        QVERIFY(actions.at(1)->isVisible());
    }

    void exitBeforeFirstPageDoesNothing()
    {
        MessageBoxDriver driver;
        m_window->exitFromProgramm();
        m_window->close();
        QVERIFY(driver.seen().isEmpty());
        QVERIFY(!m_window->isExitFromProgramProcessing());
        QVERIFY(!m_fixture->manager().isProgrammTermination());
    }

    void exitCancelKeepsRunningAndAsksAgain()
    {
        m_window->onPreloadFinished();
        MessageBoxDriver driver;
        driver.clickOnNextBox("action.cancel");
        m_window->close();
        QCOMPARE(driver.seen().size(), 1);
        const MessageBoxDriver::SeenBox box = driver.seen().at(0);
        QCOMPARE(box.title, QString("title.exit_confirmation"));
        QCOMPARE(box.text, QString("warning.confirm_exit"));
        QCOMPARE(box.buttons.size(), 2);
        QVERIFY(box.buttons.contains("action.cancel"));
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

    void minimiseLeavesTheTaskbarAndTheTrayBringsItBack()
    {
        MainWindow::overrideTrayAvailable(true);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        m_window->setWindowState(Qt::WindowMinimized);
        QVERIFY(m_window->parentWidget() != nullptr);
        QVERIFY(!m_window->isVisible());

        emit m_window->trayIcon().activated(QSystemTrayIcon::Context);
        QVERIFY(m_window->parentWidget() != nullptr);
        emit m_window->trayIcon().activated(QSystemTrayIcon::Trigger);
        QVERIFY(m_window->parentWidget() == nullptr);
        QVERIFY(m_window->isVisible());
        QVERIFY(m_window->isWindow());
        QCOMPARE(m_window->windowState() & Qt::WindowMinimized, Qt::WindowStates());

        m_window->setWindowState(Qt::WindowMaximized);
        QVERIFY(!(m_window->windowState() & Qt::WindowMaximized));
        MainWindow::overrideTrayAvailable(std::nullopt);
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
