#include "api/serverapi.h"
#include "app/programassembly.h"
#include "app/settings.h"
#include "gui/pages/loginwidget.h"
#include "gui/pages/newversiondialog.h"
#include "gui/pages/serverselectionwidget.h"
#include "gui/pages/settingsdialog.h"
#include "gui/pages/statuswidget.h"
#include "gui/pages/waitingplate.h"
#include "gui/shell/mainwindow.h"
#include "gui/shell/viewmanager.h"
#include "manager/vpnmanager.h"
#include "support/clientstand.h"
#include "support/devservice.h"
#include "support/messageboxdriver.h"
#include "support/standinlog.h"
#include "support/testmain.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <csignal>

using tavero::ConnectionChain;
using tavero::ProgramAssembly;
using tavero::ServerApi;
using tavero::test::ClientStand;
using tavero::test::DevService;
using tavero::test::MessageBoxDriver;

namespace {

// Declines the update dialog whenever it is the active modal window.
class UpdateDecliner : public QObject {
public:
    UpdateDecliner()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            if (auto* dialog = qobject_cast<NewVersionDialog*>(QApplication::activeModalWidget())) {
                ++m_declined;
                dialog->reject();
            }
        });
        m_timer.start(20);
    }
    int declined() const { return m_declined; }

private:
    QTimer m_timer;
    int m_declined = 0;
};

QString english(const char* context, const char* key)
{
    return QCoreApplication::translate(context, key);
}

} // namespace

// The whole client, assembled as main assembles it, against the development service and the
// OpenVPN stand-in; only the machine's network switch and the dial-up protocols are scripted.
class TestProgramFlow : public QObject {
    Q_OBJECT

    QTemporaryDir m_markerDir;
    std::unique_ptr<DevService> m_service;
    std::unique_ptr<ClientStand> m_stand;

    ProgramAssembly::Options options() { return m_stand->options(m_markerDir.path()); }

    QString signIn()
    {
        ServerApi api(m_service->endpoints());
        return api.loginByEmail(m_service->account(0).email, m_service->account(0).password).token;
    }

    static QString trayEntry(MainWindow* window)
    {
        QMenu* menu = window->trayIcon().contextMenu();
        emit menu->aboutToShow();
        return menu->actions().at(0)->text();
    }

private slots:
    void initTestCase()
    {
        qApp->setProperty("APPLICATION_VERSION_INT", 12310);
        qApp->setProperty("AppBuildDate", "2021-01-20");
    }

    void init()
    {
        m_service = std::make_unique<DevService>();
        m_stand =
            std::make_unique<ClientStand>(*m_service, qEnvironmentVariable("TAVERO_FAKE_OPENVPN"));
        QVERIFY2(m_stand->isReady(), qPrintable(m_stand->errorText()));
        ServerApi::resetSharedCaches();
        ServerApi::setIsOpenVpnAllowed(true);
        ServerApi::setIsKillswitchAllowed(true);
        QSettings("TAVERO", "TAVERO").clear();
        QFile::remove(m_markerDir.filePath("fr.txt"));
    }

    void cleanup()
    {
        m_stand.reset();
        m_service.reset();
        endQuitRequest();
    }

    // An exit that went through asked the application to quit; until an exec() returns, every
    // event loop (the service client's waits among them) would end at once.
    static void endQuitRequest()
    {
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }

    void pageFlowFromSplashToExit()
    {
        UpdateDecliner decliner;
        ProgramAssembly assembly(options());
        QVERIFY(assembly.assemble(true));
        // An administrator's start checks for updates; the service offers a newer version.
        QCOMPARE(decliner.declined(), 1);

        ViewManager* views = assembly.viewManager();
        MainWindow* window = views->window();
        tavero::VpnManager& manager = *assembly.vpnManager();
        QCOMPARE(views->currentWidget(), views->loginPage());
        QVERIFY(window->isVisible());
        QVERIFY(!window->connectActionVisibility());

        views->loginPage()
            ->findChild<QLineEdit*>("lineEditEmail")
            ->setText(m_service->account(0).email);
        views->loginPage()
            ->findChild<QLineEdit*>("lineEditPassword")
            ->setText(m_service->account(0).password);
        QTest::mouseClick(views->loginPage()->findChild<QPushButton*>("pushButtonEnter"),
                          Qt::LeftButton);
        QCOMPARE(views->currentWidget(), views->statusPage());
        // The first status page shows the last connected country with the disconnected state.
        QVERIFY(!manager.getLastConnectedCountryName().isEmpty());
        QCOMPARE(window->windowTitle(),
                 QString("TAVERO (%1) - Disconnected").arg(manager.getLastConnectedCountryName()));
        QVERIFY(window->connectActionVisibility());
        QVERIFY(window->allowCloseProgrammOnCross());

        QTest::mouseClick(views->statusPage()->findChild<QPushButton*>("pushButtonChangeServer"),
                          Qt::LeftButton);
        QCOMPARE(views->currentWidget(), views->serverPage());
        QVERIFY(!window->connectActionVisibility()); // not connected
        QVERIFY(!window->allowCloseProgrammOnCross());
        emit window->closeButtonClicked();
        QCOMPARE(views->currentWidget(), views->statusPage());

        // Choosing a country on the server page returns to the status page, unconnected.
        views->goToServerSelection();
        views->serverPage()->selectCountry("de");
        QCOMPARE(views->currentWidget(), views->statusPage());
        QCOMPARE(manager.connection().mode(), ConnectionChain::Disconnected);

        // Connect from the page. The tray's "Connect" while that attempt runs changes nothing: no
        // "Opening connection" box, and the waiting plate stays until the attempt ends.
        {
            bool plateKept = false;
            QObject context;
            QObject::connect(&manager.connection(), &ConnectionChain::modeChanged, &context, [&] {
                if (manager.connection().mode() != ConnectionChain::Connecting)
                    return;
                emit window->connectFromContextMenuClicked();
                plateKept = !window->waitingPlate()->isHidden();
            });
            MessageBoxDriver wrongBox;
            wrongBox.clickOnNextBox("OK"); // answers a wrong box instead of hanging on it
            QTest::mouseClick(views->statusPage()->findChild<QPushButton*>("pushButtonConnect"),
                              Qt::LeftButton);
            QVERIFY(plateKept);
            QVERIFY(wrongBox.seen().isEmpty());
        }
        QCOMPARE(manager.connection().mode(), ConnectionChain::Connected);
        QVERIFY(window->waitingPlate()->isHidden());
        QCOMPARE(m_service->openTunnels().size(), 1);
        QCOMPARE(window->windowTitle(), QString("TAVERO (Germany) - Connected"));
        QCOMPARE(trayEntry(window), QString("Disconnect"));
        for (const auto mode : {ConnectionChain::Disconnected, ConnectionChain::Connected}) {
            emit window->connectFromContextMenuClicked(); // the tray's entry, both ways
            QCOMPARE(manager.connection().mode(), mode);
        }

        // On the server page while connected the tray entry stays.
        views->goToServerSelection();
        QVERIFY(window->connectActionVisibility());
        emit window->closeButtonClicked();
        QCOMPARE(manager.connection().mode(), ConnectionChain::Connected);

        emit views->settingsDialog()->onLanguageApplySignal(QLocale::German);
        const QString germanDisconnect = english("MainWindow", "action.disconnect");
        QVERIFY(germanDisconnect != "Disconnect");
        QCOMPARE(trayEntry(window), germanDisconnect);
        QCOMPARE(tavero::Settings().getSelectedLanguage(), QString("ger"));

        MessageBoxDriver driver;
        driver.clickOnNextBox(english("QObject", "action.cancel"));
        window->close();
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(driver.seen().at(0).text,
                 english("QObject", "warning.vpn_is_connected_confirm_exit"));
        QVERIFY(!manager.isProgrammTermination());
        driver.clickOnNextBox("OK");
        window->close();
        QCOMPARE(driver.seen().size(), 2);
        QVERIFY(manager.isProgrammTermination());
        QCOMPARE(manager.connection().mode(), ConnectionChain::Disconnected);
        QTRY_VERIFY(m_service->openTunnels().isEmpty());
    }

    void startWithStoredLogin_data()
    {
        QTest::addColumn<bool>("firstRunMarker");
        QTest::addColumn<bool>("autoConnection");
        QTest::addColumn<bool>("connected");
        QTest::newRow("automatic connection") << false << true << true;
        QTest::newRow("first run: no automatic connection") << true << true << false;
        QTest::newRow("automatic connection off") << false << false << false;
    }
    void startWithStoredLogin()
    {
        QFETCH(bool, firstRunMarker);
        QFETCH(bool, autoConnection);
        QFETCH(bool, connected);
        {
            tavero::Settings settings;
            settings.setToken(signIn());
            settings.setAutoConnection(autoConnection);
        }
        const QString marker = m_markerDir.filePath("fr.txt");
        if (firstRunMarker) {
            QFile file(marker);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }

        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        ProgramAssembly assembly(options());
        QVERIFY(assembly.assemble(false));
        ViewManager* views = assembly.viewManager();
        QCOMPARE(views->currentWidget(), views->statusPage());
        QCOMPARE(assembly.vpnManager()->connection().mode() == ConnectionChain::Connected,
                 connected);
        QCOMPARE(assembly.vpnManager()->settings().isFirstRun(), firstRunMarker);
        QVERIFY(!QFile::exists(marker));
        QVERIFY(views->window()->waitingPlate()->isHidden());

        // Without administrator rights: the first page, then the warning; OpenVPN and the kill
        // switch are off for the rest of the run.
        QCOMPARE(driver.seen().size(), 1);
        QVERIFY(driver.seen().at(0).text.contains("administrator rights"));
        QVERIFY(!ServerApi::isOpenVpnAllowed());
        QVERIFY(!ServerApi::isKillswitchAllowed());
    }

    // A log-out while the settings dialog is open (its button, or a revoked token) leaves no live
    // tray "Connect" behind the login page.
    void logOutWhileSettingsOpenHidesTrayConnect_data()
    {
        QTest::addColumn<bool>("forced");
        QTest::newRow("the dialog's log-out") << false;
        QTest::newRow("revoked token while open") << true;
    }
    void logOutWhileSettingsOpenHidesTrayConnect()
    {
        QFETCH(bool, forced);
        tavero::Settings().setToken(signIn());
        UpdateDecliner decliner;
        ProgramAssembly assembly(options());
        QVERIFY(assembly.assemble(true));
        ViewManager* views = assembly.viewManager();
        MainWindow* window = views->window();
        QVERIFY(window->connectActionVisibility());
        SettingsDialog* dialog = views->settingsDialog();
        QTimer::singleShot(0, dialog, [&] {
            if (!forced) {
                dialog->onLogout();
                return;
            }
            m_service->expireTokens(true);
            ServerApi::resetSharedCaches();
            assembly.vpnManager()->getAPIService().receiveServerList();
            // The checks after the dialog closes tell whether the page changed in time.
            (void)QTest::qWaitFor([&] { return window->content() == views->loginPage(); });
            dialog->reject();
        });
        views->goToSettings();
        QCOMPARE(views->currentWidget(), views->loginPage());
        QVERIFY(!window->connectActionVisibility());
        emit window->connectFromContextMenuClicked();
        QCOMPARE(assembly.vpnManager()->connection().mode(), ConnectionChain::Disconnected);
        QVERIFY(m_service->openTunnels().isEmpty());
    }

    // SIGTERM, SIGHUP (the terminal or the desktop session going away) and SIGINT end the client
    // as its own exit does, never underneath a running attempt: once it is over, the tunnel goes,
    // openvpn with it, and the event loop ends with success so the graph unwinds in order.
    void stopSignalEndsTheClientInOrder_data()
    {
        QTest::addColumn<int>("signalNumber");
        QTest::addColumn<bool>("duringConnect");
        QTest::newRow("SIGTERM while connected") << SIGTERM << false;
        QTest::newRow("SIGHUP while connecting") << SIGHUP << true;
        QTest::newRow("SIGINT while connecting") << SIGINT << true;
    }
    void stopSignalEndsTheClientInOrder()
    {
        QFETCH(int, signalNumber);
        QFETCH(bool, duringConnect);
        tavero::test::StandInLog standIns;
        {
            ServerApi api(m_service->endpoints());
            tavero::Settings settings;
            settings.setToken(
                api.loginByEmail(m_service->account(0).email, m_service->account(0).password)
                    .token);
            settings.setProtocolTypes(OvpnUdp);
            for (const auto& servers : api.receiveServerList().serversByCountry) {
                for (const VpnServerInformation& server : servers) {
                    if (server.hasOvpnConfig)
                        settings.setServerName(server.name);
                }
            }
        }
        UpdateDecliner decliner;
        ProgramAssembly assembly(options());
        QVERIFY(assembly.assemble(true));
        tavero::VpnManager& manager = *assembly.vpnManager();
        QObject context;
        QObject::connect(&manager.connection(), &ConnectionChain::modeChanged, &context, [&] {
            if (duringConnect && manager.connection().mode() == ConnectionChain::Connecting)
                ::raise(signalNumber);
        });
        QVERIFY(manager.connect().isSuccess); // the attempt is not disturbed
        QCOMPARE(standIns.live().size(), 1);
        if (!duringConnect)
            ::raise(signalNumber);
        QTimer::singleShot(60000, &context, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(manager.connection().mode(), ConnectionChain::Disconnected);
        QTRY_VERIFY(standIns.live().isEmpty());
        QCOMPARE(standIns.leftoverConfigs(), QStringList{});
    }
};

TAVERO_TEST_GUI_MAIN(TestProgramFlow)
#include "tst_programflow.moc"
