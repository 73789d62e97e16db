// The settings dialog over a scripted service and platform: the protocol list and its
// confirmation, the kill-switch confirmation, OK and the About tab's update check (its log-out
// is tst_programflow's).
#include "api/serverapi.h"
#include "app/languagemaster.h"
#include "gui/pages/aboutprogrammwindowswidget.h"
#include "gui/pages/settingsdialog.h"
#include "gui/shell/settingscontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeserverapi.h"
#include "support/fakeviewmanager.h"
#include "support/messageboxdriver.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>

using tavero::test::FakeServerApi;
using tavero::test::FakeViewManager;
using tavero::test::MessageBoxDriver;
using tavero::test::TestPlatform;

namespace {

// Everything the dialog is made with, fresh for each test.
struct Fixture {
    Fixture()
        : manager(api, std::make_unique<TestPlatform>())
        , controller(manager, viewManager)
        , languages(manager.settings(), QLocale::English)
        , dialog(manager, controller, languages)
    {}

    TestPlatform& platform() { return static_cast<TestPlatform&>(manager.platform()); }
    tavero::ISettings& settings() { return manager.settings(); }

    template <typename T>
    T* child(const char* name)
    {
        T* widget = dialog.findChild<T*>(name);
        if (!widget)
            qFatal("no widget %s", name);
        return widget;
    }
    QComboBox* protocols() { return child<QComboBox>("selectProtocolComboBox"); }
    QCheckBox* killSwitch() { return child<QCheckBox>("checkBoxKillswitch"); }
    void pressOk() { child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->click(); }

    FakeServerApi api;
    tavero::VpnManager manager;
    FakeViewManager viewManager;
    SettingsController controller;
    tavero::LanguageMaster languages;
    SettingsDialog dialog;
};

} // namespace

class TestSettingsDialog : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        tavero::ServerApi::setIsIKEv2Allowed(true);
        tavero::ServerApi::setIsOpenVpnAllowed(true);
        tavero::ServerApi::setIsKillswitchAllowed(true);
        qApp->setProperty("APPLICATION_VERSION_INT", 12310);
    }

    // Nothing is written before OK. A stored protocol the service no longer allows still shows,
    // and OK asks before saving it: refused, the dialog stays open with nothing written.
    void okAsksThenWritesEverySetting()
    {
        Fixture f;
        f.settings().setProtocolTypes(QFlags<ProtocolType>(OvpnUdp));
        tavero::ServerApi::setIsOpenVpnAllowed(false);
        f.dialog.fillUp();
        QCOMPARE(f.protocols()->currentText(), QString("OpenVPN UDP"));
        f.dialog.show();
        f.child<QCheckBox>("checkBoxRunOnStart")->setChecked(true);
        f.child<QCheckBox>("checkBoxAutoConnection")->setChecked(true);
        f.child<QRadioButton>("radioButtonAutoConnectToRecomendedLocation")->setChecked(true);
        f.killSwitch()->setChecked(true);

        MessageBoxDriver driver;
        driver.clickOnNextBox("action.cancel");
        f.pressOk();
        QCOMPARE(driver.seen().size(), 1);
        QVERIFY(f.dialog.isVisible());
        QVERIFY(!f.settings().isAutoConnection() && !f.settings().isKillSwitch());
        QCOMPARE(f.platform().callCount("setRunOnStart"), 0);

        driver.clickOnNextBox("OK");
        f.platform().clearCalls();
        f.pressOk();
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), 2);
        QVERIFY(!f.dialog.isVisible());
        QCOMPARE(f.platform().callNames(), QStringList{"setRunOnStart"});
        QCOMPARE(f.platform().calls().first().arguments, QVariantList{true});
        QVERIFY(f.settings().isAutoConnection());
        QVERIFY(f.settings().isAutoLocation());
        QVERIFY(f.settings().isKillSwitch());
        QCOMPARE(int(f.settings().protocolTypes()), int(OvpnUdp));
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
        Fixture f;
        f.dialog.fillUp();
        f.dialog.show();
        QSignalSpy changes(&f.dialog, &SettingsDialog::killSwitchChangState);
        MessageBoxDriver driver;
        for (int click = 0; click < qMax(1, answers.size()); ++click) {
            if (!answers.isEmpty())
                driver.clickOnNextBox(answers.at(click));
            QTest::mouseClick(f.killSwitch(), Qt::LeftButton, {},
                              QPoint(5, f.killSwitch()->height() / 2));
            QTRY_COMPARE(f.killSwitch()->isChecked(), answers.value(click) != "action.no");
        }
        QCoreApplication::processEvents();
        f.killSwitch()->setChecked(false);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), answers.size());
        QVariantList seen;
        for (const QList<QVariant>& signal : qAsConst(changes))
            seen << signal.first();
        QCOMPARE(seen, states);
        QVERIFY(!f.settings().isKillSwitch());
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

        Fixture f;
        f.settings().setProtocolTypes(QFlags<ProtocolType>(stored));
        f.dialog.fillUp();
        QCOMPARE(int(f.settings().protocolTypes()), expectedStored);
        QCOMPARE(f.protocols()->currentText(), shown);

        // OK without touching anything keeps the choice and reports no new protocol, except
        // where the list could not show it.
        QSignalSpy newProtocol(&f.dialog, &SettingsDialog::settedNewProtocol);
        f.pressOk();
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

        Fixture f;
        f.api.lastVersion.status = status;
        f.api.lastVersion.versionInt = serviceVersion;
        f.dialog.show();
        f.dialog.selectInformationTab();
        QSignalSpy newVersion(&f.dialog, &SettingsDialog::checkNewVersionAppSignal);
        MessageBoxDriver driver;
        if (!box.isEmpty())
            driver.clickOnNextBox("OK");
        emit f.child<AboutProgrammWindowsWidget>("widgetAboutWindows")->checkNewVersionAppSignal();

        QCOMPARE(f.api.calls("receiveLastVersion"), 1);
        QCOMPARE(newVersion.count(), newer ? 1 : 0);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), box.isEmpty() ? 0 : 1);
        if (!box.isEmpty())
            QCOMPARE(driver.seen().first().text, box);
    }
};

TAVERO_TEST_GUI_MAIN(TestSettingsDialog)
#include "tst_settingsdialog.moc"
