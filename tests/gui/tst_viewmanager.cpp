#include "app/languagemaster.h"
#include "gui/pages/settingsdialog.h"
#include "gui/pages/statuswidget.h"
#include "gui/shell/controllerinjector.h"
#include "gui/shell/mainwindow.h"
#include "gui/shell/viewmanager.h"
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

// The view manager over a VPN manager whose service and platform are scripted: the reactions to the
// chain and the settings dialog, and the current-widget rules around dialogs.
class TestViewManager : public QObject {
    Q_OBJECT

    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<tavero::LanguageMaster> m_languages;
    std::unique_ptr<ViewManager> m_views;
    std::shared_ptr<ControllerInjector> m_injector;

private slots:
    void init()
    {
        m_fixture = std::make_unique<ManagerFixture>();
        const ServerListGettingResult list =
            ServerListMaker().country(1, "de", "Germany").server(1, "de-1", 20, true, true).list();
        m_fixture->answerReachable(list, list);
        QVERIFY(m_fixture->logIn());
        m_languages = std::make_unique<tavero::LanguageMaster>(m_fixture->manager().settings());
        m_views = std::make_unique<ViewManager>(m_fixture->manager(), *m_languages);
        m_injector = std::make_shared<ControllerInjector>(m_fixture->manager(), *m_views);
        m_views->setControllerInjector(m_injector);
    }
    void cleanup()
    {
        m_injector.reset();
        m_views.reset();
        m_languages.reset();
        m_fixture.reset();
    }

    void chainGiveUpWarnsOrReportsTheKillSwitch()
    {
        tavero::VpnManager& manager = m_fixture->manager();
        ConnectionChain& chain = manager.connection();
        MessageBoxDriver driver;

        driver.clickOnNextBox("OK");
        emit chain.protocolsExpired();
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(driver.seen().at(0).text,
                 QString("warning.connection_problems_check_internet_connection"));
        QVERIFY(!manager.isKillSwitchWasLastTime());

        manager.settings().setKillSwitch(true);
        for (const char* expected :
             {"body.kill_switch_triggered", "body.kill_switch_triggered_second_time"}) {
            driver.clickOnNextBox("OK");
            emit chain.protocolsExpired();
            QCOMPARE(driver.seen().last().text, QString(expected));
            QVERIFY(manager.isKillSwitchWasLastTime());
        }
        // A verified tunnel (or another server) starts the count again.
        QVERIFY(m_fixture->connect());
        QVERIFY(!manager.isKillSwitchWasLastTime());
        manager.setKillSwitchFlag(true);
        emit manager.vpnServers().serverWasChanged();
        QVERIFY(!manager.isKillSwitchWasLastTime());
        QVERIFY(driver.failures().isEmpty());
    }

    void killSwitchOffOffersToEnableAdapters()
    {
        tavero::test::TestPlatform& platform = m_fixture->platform();
        MessageBoxDriver driver;
        emit m_views->settingsDialog()->killSwitchChangState(0); // nothing switched off: no box
        QVERIFY(driver.seen().isEmpty());

        QVERIFY(platform.turnOffInternet().isSuccess);
        emit m_views->settingsDialog()->killSwitchChangState(2); // switched on: no box
        QVERIFY(driver.seen().isEmpty());
        driver.clickOnNextBox("action.no");
        emit m_views->settingsDialog()->killSwitchChangState(0);
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(driver.seen().at(0).text, QString("body.do_we_need_enable_internet_interfaces"));
        QCOMPARE(platform.callCount("turnOnNetDevices"), 0);
        QVERIFY(platform.isNetworkOff());

        driver.clickOnNextBox("action.yes");
        emit m_views->settingsDialog()->killSwitchChangState(0);
        QCOMPARE(platform.callCount("turnOnNetDevices"), 1);
        QVERIFY(!platform.isNetworkOff());
    }
};

TAVERO_TEST_GUI_MAIN(TestViewManager)
#include "tst_viewmanager.moc"
