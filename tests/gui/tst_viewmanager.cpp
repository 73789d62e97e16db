#include "api/serverapi.h"
#include "app/languagemaster.h"
#include "gui/pages/aboutprogrammwindowswidget.h"
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

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

using tavero::ConnectionChain;
using tavero::test::ManagerFixture;
using tavero::test::MessageBoxDriver;
using tavero::test::ServerListMaker;

// The view manager, its window and its settings dialog over a VPN manager whose service and
// platform are scripted: the reactions to the chain and the dialog, the exit, the wait cursor of
// its utilities; in the dialog the protocol list and its confirmation, the kill-switch
// confirmation, OK and the About tab's update check (its log-out is tst_programflow's).
class TestViewManager : public QObject {
    Q_OBJECT

    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<tavero::LanguageMaster> m_languages;
    std::unique_ptr<ViewManager> m_views;
    std::shared_ptr<ControllerInjector> m_injector;

    tavero::VpnManager& manager() { return m_fixture->manager(); }
    MainWindow& window() { return *m_views->window(); }
    SettingsDialog& dialog() { return *m_views->settingsDialog(); }
    tavero::ISettings& settings() { return manager().settings(); }
    template <typename T>
    T* child(const char* name)
    {
        T* widget = dialog().findChild<T*>(name);
        if (!widget)
            qFatal("no widget %s", name);
        return widget;
    }
    QComboBox* protocols() { return child<QComboBox>("selectProtocolComboBox"); }
    QCheckBox* killSwitch() { return child<QCheckBox>("checkBoxKillswitch"); }
    void pressOk() { child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->click(); }

private slots:
    void init()
    {
        tavero::ServerApi::setIsIKEv2Allowed(true);
        tavero::ServerApi::setIsOpenVpnAllowed(true);
        tavero::ServerApi::setIsKillswitchAllowed(true);
        qApp->setProperty("APPLICATION_VERSION_INT", 12310);
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

    // Nothing is written before OK. A stored protocol the service no longer allows still shows,
    // and OK asks before saving it: refused, the dialog stays open with nothing written.
    void okAsksThenWritesEverySetting()
    {
        settings().setProtocolTypes(QFlags<ProtocolType>(OvpnUdp));
        tavero::ServerApi::setIsOpenVpnAllowed(false);
        dialog().fillUp();
        QCOMPARE(protocols()->currentText(), QString("OpenVPN UDP"));
        dialog().show();
        child<QCheckBox>("checkBoxRunOnStart")->setChecked(true);
        child<QCheckBox>("checkBoxAutoConnection")->setChecked(true);
        child<QRadioButton>("radioButtonAutoConnectToRecomendedLocation")->setChecked(true);
        killSwitch()->setChecked(true);

        MessageBoxDriver driver;
        driver.clickOnNextBox("action.cancel");
        pressOk();
        QCOMPARE(driver.seen().size(), 1);
        QVERIFY(dialog().isVisible());
        QVERIFY(!settings().isAutoConnection() && !settings().isKillSwitch());
        QCOMPARE(m_fixture->platform().callCount("setRunOnStart"), 0);

        driver.clickOnNextBox("OK");
        m_fixture->platform().clearCalls();
        pressOk();
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), 2);
        QVERIFY(!dialog().isVisible());
        QCOMPARE(m_fixture->platform().callNames(), QStringList{"setRunOnStart"});
        QCOMPARE(m_fixture->platform().calls().first().arguments, QVariantList{true});
        QVERIFY(settings().isAutoConnection());
        QVERIFY(settings().isAutoLocation());
        QVERIFY(settings().isKillSwitch());
        QCOMPARE(int(settings().protocolTypes()), int(OvpnUdp));
    }

    // Switching the kill switch on where the service forbids it asks; refused, the next click asks
    // again. Switching it off never asks. Only OK writes it.
    void killSwitchConfirmation_data()
    {
        QTest::addColumn<bool>("allowed");
        QTest::addColumn<QStringList>("answers"); // one click per answer; empty: no box
        QTest::addColumn<QVariantList>("states");
        QTest::newRow("allowed") << true << QStringList() << QVariantList{2, 0};
        QTest::newRow("forbidden, yes") << false << QStringList{"action.yes"} << QVariantList{2, 0};
        QTest::newRow("forbidden, no, then yes")
            << false << QStringList{"action.no", "action.yes"} << QVariantList{0, 2, 0};
    }
    void killSwitchConfirmation()
    {
        QFETCH(bool, allowed);
        QFETCH(QStringList, answers);
        QFETCH(QVariantList, states);
        tavero::ServerApi::setIsKillswitchAllowed(allowed);
        dialog().fillUp();
        dialog().show();
        QSignalSpy changes(&dialog(), &SettingsDialog::killSwitchChangState);
        MessageBoxDriver driver;
        for (int click = 0; click < qMax(1, answers.size()); ++click) {
            if (!answers.isEmpty())
                driver.clickOnNextBox(answers.at(click));
            QTest::mouseClick(killSwitch(), Qt::LeftButton, {},
                              QPoint(5, killSwitch()->height() / 2));
            QTRY_COMPARE(killSwitch()->isChecked(), answers.value(click) != "action.no");
        }
        QCoreApplication::processEvents();
        killSwitch()->setChecked(false);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), answers.size());
        QVariantList seen;
        for (const QList<QVariant>& signal : qAsConst(changes))
            seen << signal.first();
        QCOMPARE(seen, states);
        QVERIFY(!settings().isKillSwitch());
    }

    void fillingLoadsTheProtocolChoice_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("expectedStored");
        QTest::addColumn<QString>("shown");

        QTest::newRow("automatic") << 31 << 31 << "label.auto_protocol";
        QTest::newRow("two OpenVPN flags become automatic") << 6 << 31 << "label.auto_protocol";
        QTest::newRow("nothing allowed becomes automatic") << 0 << 31 << "label.auto_protocol";
        QTest::newRow("IKEv2 alone") << 1 << 1 << "IKEv2";
        QTest::newRow("L2TP alone is kept, shown as automatic") << 8 << 8 << "label.auto_protocol";
    }

    void fillingLoadsTheProtocolChoice()
    {
        QFETCH(int, stored);
        QFETCH(int, expectedStored);
        QFETCH(QString, shown);

        settings().setProtocolTypes(QFlags<ProtocolType>(stored));
        dialog().fillUp();
        QCOMPARE(int(settings().protocolTypes()), expectedStored);
        QCOMPARE(protocols()->currentText(), shown);

        // OK without touching anything keeps the choice and reports no new protocol, except
        // where the list could not show it.
        QSignalSpy newProtocol(&dialog(), &SettingsDialog::settedNewProtocol);
        pressOk();
        QCOMPARE(newProtocol.count(), stored == 8 ? 1 : 0);
    }

    void aboutTabChecksForUpdates_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("serviceVersion");
        QTest::addColumn<bool>("newer");
        QTest::addColumn<QString>("box"); // expected box text, empty for none
        const int ok = RequestResult::Ok;
        QTest::newRow("newer version") << ok << 12311 << true << QString();
        QTest::newRow("same version") << ok << 12310 << false << "message.you_have_actual_version";
        QTest::newRow("service unreachable")
            << int(RequestResult::NoInternet) << 0 << false
            << "warning.connection_problems_check_internet_connection";
    }

    void aboutTabChecksForUpdates()
    {
        QFETCH(int, status);
        QFETCH(int, serviceVersion);
        QFETCH(bool, newer);
        QFETCH(QString, box);

        m_fixture->api().lastVersion.status = status;
        m_fixture->api().lastVersion.versionInt = serviceVersion;
        dialog().show();
        dialog().selectInformationTab();
        QSignalSpy newVersion(&dialog(), &SettingsDialog::checkNewVersionAppSignal);
        // The view manager's own answer asks the service again and offers the update: not here.
        QObject::disconnect(&dialog(), &SettingsDialog::checkNewVersionAppSignal, m_views.get(),
                            nullptr);
        MessageBoxDriver driver;
        if (!box.isEmpty())
            driver.clickOnNextBox("OK");
        emit child<AboutProgrammWindowsWidget>("widgetAboutWindows")->checkNewVersionAppSignal();

        QCOMPARE(m_fixture->api().calls("receiveLastVersion"), 1);
        QCOMPARE(newVersion.count(), newer ? 1 : 0);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), box.isEmpty() ? 0 : 1);
        if (!box.isEmpty())
            QCOMPARE(driver.seen().first().text, box);
    }
};

TAVERO_TEST_GUI_MAIN(TestViewManager)
#include "tst_viewmanager.moc"
