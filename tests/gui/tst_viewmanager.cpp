#include "app/languagemaster.h"
#include "gui/pages/aboutprogrammwindowswidget.h"
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

#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

using tavero::ConnectionChain;
using tavero::test::ManagerFixture;
using tavero::test::MessageBoxDriver;
using tavero::test::ServerListMaker;

// The view manager over a VPN manager whose service and platform are scripted: the font pass,
// the reactions to the chain and the settings dialog, and the current-widget rules around dialogs.
class TestViewManager : public QObject {
    Q_OBJECT

    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<tavero::LanguageMaster> m_languages;
    std::unique_ptr<ViewManager> m_views;
    std::shared_ptr<ControllerInjector> m_injector;

    static bool insideSkippedKind(QWidget* widget)
    {
        for (QWidget* w = widget; w; w = w->parentWidget()) {
            if (qobject_cast<AboutProgrammWindowsWidget*>(w) ||
                qobject_cast<QDialogButtonBox*>(w) || qobject_cast<QMenu*>(w))
                return true;
        }
        return false;
    }

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

    void collectingSkipsAboutWidgetButtonBoxesAndMenus()
    {
        QWidget root;
        QFont designed = root.font();
        designed.setPointSize(14);
        root.setFont(designed);
        auto* label = new QLabel("label", &root);
        auto* box = new QDialogButtonBox(QDialogButtonBox::Ok, &root);
        auto* menu = new QMenu(&root);
        auto* about = new AboutProgrammWindowsWidget(&root);
        QVector<QPair<QWidget*, int>> collected;
        ViewManager::correctFonts(&root, 1.0, collected);
        QVector<QWidget*> widgets;
        for (const auto& entry : qAsConst(collected))
            widgets << entry.first;
        QCOMPARE(widgets.value(0), &root); // parents first
        QVERIFY(widgets.contains(label));
        QVERIFY(!widgets.contains(box));
        QVERIFY(!widgets.contains(box->button(QDialogButtonBox::Ok)));
        QVERIFY(!widgets.contains(menu));
        QVERIFY(!widgets.contains(about));
        QCOMPARE(collected.value(0).second, 14);

        collected.clear();
        ViewManager::correctFonts(&root, 1.5, collected);
        QCOMPARE(collected.value(0).second, 21); // 14 × 1.5, rounded
    }

    void fontPassAppliedToPagesAndDialog()
    {
        const QList<QLabel*> statusLabels = m_views->statusPage()->findChildren<QLabel*>();
        QVERIFY(!statusLabels.isEmpty());
        for (QLabel* label : statusLabels)
            QCOMPARE(label->font().family(), QString("Montserrat"));
        const QList<QWidget*> dialogWidgets = m_views->settingsDialog()->findChildren<QWidget*>();
        QVERIFY(!dialogWidgets.isEmpty());
        int kept = 0;
        for (QWidget* widget : dialogWidgets) {
            if (insideSkippedKind(widget)) {
                // The about widget, button boxes and menus keep the fonts they were made with.
                if (qobject_cast<QLabel*>(widget) && widget->font().pixelSize() != 13)
                    ++kept;
                continue;
            }
            QVERIFY2(widget->font().pixelSize() == 13,
                     qPrintable(widget->metaObject()->className() + QString(" ") +
                                widget->objectName()));
            QCOMPARE(widget->font().family(), QString("Montserrat"));
        }
        QVERIFY(kept > 0);
        // The tray menu keeps the font it was made with.
        QVERIFY(m_views->window()->trayIcon().contextMenu()->font().family() != "Montserrat");
        QCOMPARE(m_views->rescaleSize(14), 10.5);
        QCOMPARE(m_views->rescaleSize(18), 13.5);
    }

    void chainGiveUpWarnsOrReportsTheKillSwitch()
    {
        tavero::VpnManager& manager = m_fixture->manager();
        ConnectionChain& chain = manager.connection();
        MessageBoxDriver driver;

        driver.clickOnNextBox("OK");
        emit chain.protocolsExpired();
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(driver.seen().at(0).icon, QMessageBox::Warning);
        QCOMPARE(driver.seen().at(0).title, QString());
        QCOMPARE(driver.seen().at(0).text,
                 QString("warning.connection_problems_check_internet_connection"));
        QVERIFY(!manager.isKillSwitchWasLastTime());

        manager.settings().setKillSwitch(true);
        for (const char* expected :
             {"body.kill_switch_triggered", "body.kill_switch_triggered_second_time"}) {
            driver.clickOnNextBox("OK");
            emit chain.protocolsExpired();
            QCOMPARE(driver.seen().last().icon, QMessageBox::Critical);
            QCOMPARE(driver.seen().last().title, QString("title.kill_switch_triggered"));
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

    void dialogReturnsToThePreviousPage()
    {
        m_views->goToStatus(true);
        MainWindow* window = m_views->window();
        QVERIFY(window->connectActionVisibility());
        QWidget* seenCurrent = nullptr;
        bool seenTrayEntry = true;
        QTimer::singleShot(100, this, [&] {
            seenCurrent = m_views->currentWidget();
            seenTrayEntry = window->connectActionVisibility();
            m_views->settingsDialog()->reject();
        });
        m_views->goToInformation();
        QCOMPARE(seenCurrent, static_cast<QWidget*>(m_views->settingsDialog()));
        QVERIFY(!seenTrayEntry);
        QCOMPARE(m_views->currentWidget(), static_cast<QWidget*>(m_views->statusPage()));
        QVERIFY(window->connectActionVisibility());
    }
};

TAVERO_TEST_GUI_MAIN(TestViewManager)
#include "tst_viewmanager.moc"
