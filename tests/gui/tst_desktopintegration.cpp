// The client on a Linux desktop: a minimised window stays reachable without a tray, and the
// autostart choice is named after what it does here, in every language.
#include "app/languagemaster.h"
#include "gui/pages/settingsdialog.h"
#include "gui/shell/mainwindow.h"
#include "gui/shell/settingscontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/testmain.h"

#include <QCheckBox>

class TestDesktopIntegration : public QObject {
    Q_OBJECT

private slots:
    // With no tray to bring it back, the minimised window keeps its taskbar button.
    void minimisedWindowStaysOnTheTaskbarWithoutATray()
    {
        MainWindow::overrideTrayAvailable(false);
        tavero::test::ManagerFixture fixture;
        MainWindow window(fixture.manager());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.setWindowState(Qt::WindowMinimized);
        MainWindow::overrideTrayAvailable(std::nullopt);
        QCOMPARE(window.parentWidget(), nullptr);
        QVERIFY(window.isWindow() && window.isVisible());
    }

    void autostartIsRunAtLoginInEveryLanguage()
    {
        tavero::test::ManagerFixture fixture;
        tavero::test::FakeViewManager viewManager;
        SettingsController controller(fixture.manager(), viewManager);
        tavero::LanguageMaster languages(fixture.manager().settings(), QLocale::English);
        SettingsDialog dialog(fixture.manager(), controller, languages);
        auto* autostart = dialog.findChild<QCheckBox*>("checkBoxRunOnStart");
        for (const tavero::LanguageInfo& language : languages.getLanguageInfos()) {
            languages.changeLanguageByName(language.code);
            dialog.reTranslateUI(); // as the view manager does after a switch
            const QString expected =
                QCoreApplication::translate("SettingsDialog", "label.run_at_login");
            QVERIFY2(expected != QLatin1String("label.run_at_login"),
                     qPrintable(language.code + " has no translation"));
            QCOMPARE(autostart->text(), expected);
            QVERIFY2(!expected.contains(QLatin1String("windows"), Qt::CaseInsensitive),
                     qPrintable(expected));
        }
    }
};

TAVERO_TEST_GUI_MAIN(TestDesktopIntegration)
#include "tst_desktopintegration.moc"
