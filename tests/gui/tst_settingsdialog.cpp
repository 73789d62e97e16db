// The settings dialog over a scripted service and platform: filling, the protocol list and its
// confirmation, the kill-switch confirmation, OK, the language, log-out, closing, the About tab's
// update check and the painted section rules.
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
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QTabWidget>

using tavero::test::FakeServerApi;
using tavero::test::FakeViewManager;
using tavero::test::MessageBoxDriver;
using tavero::test::TestPlatform;

Q_DECLARE_METATYPE(QLocale::Language)

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
    void choose(QComboBox* combo, int index) { combo->setCurrentIndex(index); }

    FakeServerApi api;
    tavero::VpnManager manager;
    FakeViewManager viewManager;
    SettingsController controller;
    tavero::LanguageMaster languages;
    SettingsDialog dialog;
};

bool itemEnabled(QComboBox* combo, int index)
{
    auto* model = qobject_cast<QStandardItemModel*>(combo->model());
    return model && model->item(index) && model->item(index)->isEnabled();
}

} // namespace

class TestSettingsDialog : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<QLocale::Language>(); }

    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        tavero::ServerApi::setIsIKEv2Allowed(true);
        tavero::ServerApi::setIsOpenVpnAllowed(true);
        tavero::ServerApi::setIsKillswitchAllowed(true);
        qApp->setProperty("APPLICATION_VERSION_INT", 12310);
    }

    void fillingLoadsTheProtocolChoice_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("expectedStored");
        QTest::addColumn<QString>("shown");

        QTest::newRow("automatic") << 31 << 31 << "label.auto_protocol";
        QTest::newRow("two OpenVPN flags become automatic") << 6 << 31 << "label.auto_protocol";
        QTest::newRow("IKEv2 and UDP become automatic") << 5 << 31 << "label.auto_protocol";
        QTest::newRow("nothing allowed becomes automatic") << 0 << 31 << "label.auto_protocol";
        QTest::newRow("IKEv2 alone") << 1 << 1 << "IKEv2";
        QTest::newRow("OpenVPN UDP alone") << 4 << 4 << "OpenVPN UDP";
        QTest::newRow("OpenVPN TCP alone") << 2 << 2 << "OpenVPN TCP";
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

    void fillingLoadsTheOtherControls()
    {
        Fixture f;
        f.api.accountInfo.status = RequestResult::Ok;
        f.api.accountInfo.email = QStringLiteral("alice@tavero.example");
        f.settings().setAutoConnection(true);
        f.settings().setAutoLocation(true);
        f.settings().setKillSwitch(true);
        f.platform().setRunOnStart(true);
        QSignalSpy killSwitch(&f.dialog, &SettingsDialog::killSwitchChangState);

        f.dialog.fillUp();
        QCOMPARE(f.api.calls("receiveAccountInfo"), 1);
        QVERIFY(f.child<QCheckBox>("checkBoxRunOnStart")->isChecked());
        QVERIFY(f.child<QCheckBox>("checkBoxAutoConnection")->isChecked());
        QVERIFY(f.child<QRadioButton>("radioButtonAutoConnectToRecomendedLocation")->isChecked());
        QVERIFY(!f.child<QRadioButton>("radioButtonAutoConnectToLastLocation")->isChecked());
        QVERIFY(f.killSwitch()->isChecked());
        QCOMPARE(killSwitch.count(), 0); // loading is not a change
        QCOMPARE(f.child<QLabel>("labelMail")->text(), QString("alice@tavero.example"));

        // Filled again after the settings changed elsewhere.
        f.settings().setAutoConnection(false);
        f.settings().setAutoLocation(false);
        f.api.accountInfo.status = RequestResult::NoInternet;
        f.settings().setEmail(QStringLiteral("stored@tavero.example"));
        f.dialog.fillUp();
        QVERIFY(!f.child<QCheckBox>("checkBoxAutoConnection")->isChecked());
        QVERIFY(f.child<QRadioButton>("radioButtonAutoConnectToLastLocation")->isChecked());
        // The targets only apply to automatic connection.
        QVERIFY(!f.child<QRadioButton>("radioButtonAutoConnectToLastLocation")->isEnabled());
    }

    void protocolListDisablesWhatTheServiceForbids_data()
    {
        QTest::addColumn<bool>("ikev2");
        QTest::addColumn<bool>("openVpn");
        QTest::newRow("everything allowed") << true << true;
        QTest::newRow("no OpenVPN (no administrator rights)") << true << false;
        QTest::newRow("no IKEv2") << false << true;
    }

    void protocolListDisablesWhatTheServiceForbids()
    {
        QFETCH(bool, ikev2);
        QFETCH(bool, openVpn);
        tavero::ServerApi::setIsIKEv2Allowed(ikev2);
        tavero::ServerApi::setIsOpenVpnAllowed(openVpn);
        Fixture f;
        f.dialog.fillUp();
        QComboBox* combo = f.protocols();
        QCOMPARE(combo->count(), 4);
        const QVector<int> data = {31, 1, 4, 2};
        const QStringList texts = {"label.auto_protocol", "IKEv2", "OpenVPN UDP", "OpenVPN TCP"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(combo->itemData(i).toInt(), data.at(i));
            QCOMPARE(combo->itemText(i), texts.at(i));
        }
        QVERIFY(itemEnabled(combo, 0));
        QCOMPARE(itemEnabled(combo, 1), ikev2);
        QCOMPARE(itemEnabled(combo, 2), openVpn);
        QCOMPARE(itemEnabled(combo, 3), openVpn);
    }

    // A stored protocol the service no longer allows still shows; OK asks before saving it.
    void okAsksBeforeSavingAForbiddenProtocol()
    {
        Fixture f;
        f.settings().setProtocolTypes(QFlags<ProtocolType>(OvpnUdp));
        tavero::ServerApi::setIsOpenVpnAllowed(false);
        f.dialog.fillUp();
        QCOMPARE(f.protocols()->currentText(), QString("OpenVPN UDP"));
        f.child<QCheckBox>("checkBoxAutoConnection")->setChecked(true);
        f.dialog.show();

        MessageBoxDriver driver;
        driver.clickOnNextBox("action.cancel");
        f.pressOk();
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), 1);
        const MessageBoxDriver::SeenBox box = driver.seen().first();
        QCOMPARE(box.title, QString("title.settings_confirmation"));
        QCOMPARE(box.text, QString("warning.selected_protocol_not_allowed_save_anyway?"));
        QCOMPARE(box.buttons.size(), 2);
        QVERIFY(box.buttons.contains("OK") && box.buttons.contains("action.cancel"));
        QCOMPARE(box.defaultButton, QString());
        // Refused: still open, nothing written.
        QVERIFY(f.dialog.isVisible());
        QVERIFY(!f.settings().isAutoConnection());
        QCOMPARE(f.platform().callCount("setRunOnStart"), 0);

        driver.clickOnNextBox("OK");
        f.pressOk();
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), 2);
        QVERIFY(!f.dialog.isVisible());
        QVERIFY(f.settings().isAutoConnection());
        QCOMPARE(int(f.settings().protocolTypes()), int(OvpnUdp));
    }

    void automaticIsSavedWithoutAsking()
    {
        tavero::ServerApi::setIsIKEv2Allowed(false);
        tavero::ServerApi::setIsOpenVpnAllowed(false);
        Fixture f;
        f.settings().setProtocolTypes(QFlags<ProtocolType>(IKEv2));
        f.dialog.fillUp();
        f.choose(f.protocols(), 0);
        f.dialog.show();
        QSignalSpy newProtocol(&f.dialog, &SettingsDialog::settedNewProtocol);
        f.pressOk(); // a box would block here and fail the test through its time limit
        QVERIFY(!f.dialog.isVisible());
        QCOMPARE(int(f.settings().protocolTypes()), 31);
        QCOMPARE(newProtocol.count(), 1);
    }

    void okWritesEverySettingAndReportsANewProtocol()
    {
        Fixture f;
        f.dialog.fillUp();
        f.dialog.show();
        f.child<QCheckBox>("checkBoxRunOnStart")->setChecked(true);
        f.child<QCheckBox>("checkBoxAutoConnection")->setChecked(true);
        f.child<QRadioButton>("radioButtonAutoConnectToRecomendedLocation")->setChecked(true);
        f.killSwitch()->setChecked(true);
        f.choose(f.protocols(), 3);

        // Nothing is written before OK.
        QVERIFY(!f.settings().isAutoConnection());
        QCOMPARE(f.platform().callCount("setRunOnStart"), 0);

        QSignalSpy newProtocol(&f.dialog, &SettingsDialog::settedNewProtocol);
        f.platform().clearCalls();
        f.pressOk();
        QCOMPARE(f.platform().callNames(), QStringList{"setRunOnStart"});
        QCOMPARE(f.platform().calls().first().arguments, QVariantList{true});
        QVERIFY(f.settings().isAutoConnection());
        QVERIFY(f.settings().isAutoLocation());
        QVERIFY(f.settings().isKillSwitch());
        QCOMPARE(int(f.settings().protocolTypes()), int(OvpnTcp));
        QCOMPARE(newProtocol.count(), 1);
        QVERIFY(!f.dialog.isVisible());

        // Opened and confirmed again without a change: no new protocol.
        f.dialog.fillUp();
        f.dialog.show();
        QCOMPARE(f.protocols()->currentText(), QString("OpenVPN TCP"));
        f.pressOk();
        QCOMPARE(newProtocol.count(), 1);
    }

    void killSwitchConfirmation_data()
    {
        QTest::addColumn<bool>("allowed");
        QTest::addColumn<QString>("answer"); // empty: no box expected
        QTest::addColumn<bool>("checked");
        QTest::addColumn<QVariantList>("states");
        QTest::newRow("allowed") << true << QString() << true << QVariantList{2};
        QTest::newRow("forbidden, answered yes")
            << false << "action.yes" << true << QVariantList{2};
        QTest::newRow("forbidden, answered no") << false << "action.no" << false << QVariantList{0};
    }

    void killSwitchConfirmation()
    {
        QFETCH(bool, allowed);
        QFETCH(QString, answer);
        QFETCH(bool, checked);
        QFETCH(QVariantList, states);

        tavero::ServerApi::setIsKillswitchAllowed(allowed);
        Fixture f;
        f.dialog.fillUp();
        f.dialog.show();
        QSignalSpy changes(&f.dialog, &SettingsDialog::killSwitchChangState);
        MessageBoxDriver driver;
        if (!answer.isEmpty())
            driver.clickOnNextBox(answer);
        QTest::mouseClick(f.killSwitch(), Qt::LeftButton, {},
                          QPoint(5, f.killSwitch()->height() / 2));

        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().size(), answer.isEmpty() ? 0 : 1);
        if (!answer.isEmpty()) {
            const MessageBoxDriver::SeenBox box = driver.seen().first();
            QCOMPARE(box.title, QString("TAVERO"));
            QCOMPARE(box.text, QString("label.killswitch_is_unavailable_want_to_continue"));
            QCOMPARE(box.icon, QMessageBox::Warning);
            QCOMPARE(box.buttons, (QStringList{"action.yes", "action.no"}));
            QCOMPARE(box.defaultButton, QString());
        }
        QTRY_COMPARE(f.killSwitch()->isChecked(), checked);
        QCoreApplication::processEvents();
        QVariantList seen;
        for (const QList<QVariant>& signal : qAsConst(changes))
            seen << signal.first();
        QCOMPARE(seen, states);
        QVERIFY(!f.settings().isKillSwitch()); // only OK writes it

        // Switching it off never asks; refused, the next click asks again.
        if (checked) {
            f.killSwitch()->setChecked(false);
            QCOMPARE(changes.last().first().toInt(), 0);
            QCOMPARE(driver.seen().size(), answer.isEmpty() ? 0 : 1);
        } else {
            driver.clickOnNextBox("action.yes");
            QTest::mouseClick(f.killSwitch(), Qt::LeftButton, {},
                              QPoint(5, f.killSwitch()->height() / 2));
            QCOMPARE(driver.seen().size(), 2);
            QVERIFY(f.killSwitch()->isChecked());
            QCOMPARE(changes.last().first().toInt(), 2);
        }
    }

    void languageSwitchesAtOnce()
    {
        Fixture f;
        f.settings().setSelectedLanguage(QStringLiteral("fra"));
        SettingsDialog dialog(f.manager, f.controller, f.languages);
        auto* languages = dialog.findChild<QComboBox*>("selectLanguageComboBox");
        QCOMPARE(languages->count(), 5);
        QCOMPARE(languages->currentText(), QString("Français")); // the stored language
        const QStringList names = {"English", "Русский", "Français", "Deutsche", "Español"};
        for (int i = 0; i < names.size(); ++i)
            QCOMPARE(languages->itemText(i), names.at(i));

        dialog.show();
        QSignalSpy applied(&dialog, &SettingsDialog::onLanguageApplySignal);
        languages->setCurrentIndex(3);
        QCOMPARE(applied.count(), 1);
        QCOMPARE(applied.first().first().value<QLocale::Language>(), QLocale::German);

        // Cancel does not take it back.
        dialog.findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Cancel)->click();
        QVERIFY(!dialog.isVisible());
        QCOMPARE(applied.count(), 1);
    }

    void unknownStoredLanguageSelectsTheFirst()
    {
        Fixture f;
        f.settings().setSelectedLanguage(QStringLiteral("Deutsche"));
        SettingsDialog dialog(f.manager, f.controller, f.languages);
        QCOMPARE(dialog.findChild<QComboBox*>("selectLanguageComboBox")->currentIndex(), 0);
    }

    void logOutLeavesForTheLoginPage()
    {
        Fixture f;
        f.settings().setAutoConnection(true);
        f.settings().setToken(QStringLiteral("token"));
        f.settings().setEmail(QStringLiteral("alice@tavero.example"));
        f.dialog.fillUp();
        f.dialog.show();
        f.child<QPushButton>("pushButtonLogout")->click();

        QVERIFY(!f.settings().isAutoConnection());
        QVERIFY(f.settings().token().isEmpty());
        QCOMPARE(f.settings().getEmail(), QString("alice@tavero.example"));
        QCOMPARE(f.viewManager.currentPage(), QString("goToLogin"));
        QVERIFY(!f.dialog.isVisible());
    }

    // Closing only hides: the same dialog is filled and shown again.
    void closingHidesTheDialog()
    {
        Fixture f;
        QPointer<SettingsDialog> dialog(&f.dialog);
        f.dialog.fillUp();
        f.dialog.show();
        f.killSwitch()->setChecked(true);
        QVERIFY(!f.dialog.close()); // the close event is ignored
        QVERIFY(!f.dialog.isVisible());
        QCoreApplication::processEvents();
        QVERIFY(dialog);
        QVERIFY(!f.settings().isKillSwitch());

        f.dialog.fillUp();
        f.dialog.show();
        QVERIFY(!f.killSwitch()->isChecked()); // filled again from the settings
        f.dialog.reject();
        QVERIFY(!f.dialog.isVisible());
    }

    void tabs()
    {
        Fixture f;
        auto* tabs = f.child<QTabWidget>("tabs");
        QCOMPARE(tabs->count(), 2);
        QCOMPARE(tabs->widget(0)->objectName(), QString("tabCommon"));
        QCOMPARE(tabs->widget(1)->objectName(), QString("tabAboutProgramm"));
        f.dialog.show();
        QVERIFY(!f.child<QWidget>("toolButtonMainTab")->isVisible());
        QVERIFY(!f.child<QWidget>("widgetAboutForMacos")->isVisible());

        f.dialog.selectInformationTab();
        QCOMPARE(tabs->currentIndex(), 1);
        QVERIFY(f.child<AboutProgrammWindowsWidget>("widgetAboutWindows")->isVisible());
        f.dialog.selectSettingsTab();
        QCOMPARE(tabs->currentIndex(), 0);
        f.dialog.selectSettingsTab();
        QCOMPARE(tabs->currentIndex(), 0);
        QCOMPARE(f.dialog.size(), QSize(545, 582));
        QCOMPARE(f.dialog.windowTitle(), QString("title.settings:"));
    }

    // The four section titles first carry the code's texts; a retranslation applies the form's.
    void retranslationKeepsTheChoicesAndTheMail()
    {
        Fixture f;
        f.api.accountInfo.status = RequestResult::Ok;
        f.api.accountInfo.email = QStringLiteral("bob@tavero.example");
        QCOMPARE(f.child<QLabel>("labelMainSettingsTitle")->text(), QString("label.autoload"));
        QCOMPARE(f.child<QLabel>("labelAccount")->text(), QString("label.account"));
        QVERIFY(!f.child<QLabel>("labelKillswitch")->font().bold());
        QCOMPARE(f.child<QLabel>("labelVersion")->text(), QString("label.version"));
        f.dialog.fillUp();
        f.choose(f.protocols(), 2);

        QTranslator german;
        QVERIFY(german.load(":/translations/ger", QString(), QString(), ""));
        QCoreApplication::installTranslator(&german);
        f.dialog.reTranslateUI();
        QCoreApplication::removeTranslator(&german);

        QCOMPARE(f.child<QLabel>("labelMainSettingsTitle")->text(), QString("Grundeinstellungen:"));
        QCOMPARE(f.child<QLabel>("labelAccount")->text(), QString("Konto:"));
        QCOMPARE(f.child<QCheckBox>("checkBoxRunOnStart")->text(),
                 QString("Bei der Anmeldung starten"));
        QCOMPARE(f.protocols()->currentIndex(), 2);
        QCOMPARE(f.protocols()->itemText(0), QString("Automatisch"));
        QCOMPARE(f.child<QLabel>("labelMail")->text(), QString("bob@tavero.example"));
        QCOMPARE(f.child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Cancel)->text(),
                 QString("Abbrechen"));
        QCOMPARE(f.child<QLabel>("labelVersion")->text(),
                 "Version " + QCoreApplication::applicationVersion());
    }

    void aboutTabChecksForUpdates_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("serviceVersion");
        QTest::addColumn<bool>("newer");
        QTest::addColumn<QString>("box"); // expected box text, empty for none
        QTest::newRow("newer version") << int(RequestResult::Ok) << 12311 << true << QString();
        QTest::newRow("same version")
            << int(RequestResult::Ok) << 12310 << false << "message.you_have_actual_version";
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

    // The section rules and frames in #e7e7e7, on the sections' own pixels.
    void paintsSectionRulesAndFrames()
    {
        Fixture f;
        f.dialog.fillUp();
        f.dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f.dialog));
        const QImage image = f.dialog.grab().toImage();
        const QColor rule(0xe7, 0xe7, 0xe7);
        auto pixelOf = [&](QWidget* section, QPoint point) {
            return image.pixelColor(section->mapTo(&f.dialog, point) * image.devicePixelRatio());
        };

        for (const char* name : {"widgetConnectionSettings", "widgetKillswitch"}) {
            auto* section = f.child<QWidget>(name);
            const QLabel* title = section->findChild<QLabel*>();
            const int y = title->geometry().top() + title->fontMetrics().height() / 2 + 2;
            const int textEnd =
                title->geometry().left() + title->fontMetrics().horizontalAdvance(title->text());
            QCOMPARE(pixelOf(section, {section->width() - 30, y}), rule);
            QCOMPARE(pixelOf(section, {textEnd + 12, y}), rule);
            QVERIFY(pixelOf(section, {textEnd + 5, y}) != rule); // the gap after the title
            QVERIFY(pixelOf(section, {section->width() - 30, y + 6}) != rule);
        }

        // The account details are framed one pixel outside.
        auto* account = f.child<QWidget>("widgetAccount");
        const QRect details = f.child<QWidget>("widgetAccountDetails")->geometry();
        QCOMPARE(pixelOf(account, {details.center().x(), details.top() - 1}), rule);
        QCOMPARE(pixelOf(account, {details.left() - 1, details.center().y()}), rule);
        QCOMPARE(pixelOf(account, {details.right() + 1, details.center().y()}), rule);

        // The automatic-connection frame: its caption interrupts the top edge.
        auto* main = f.child<QWidget>("widgetMainSettings");
        const QRect caption = f.child<QCheckBox>("checkBoxAutoConnection")->geometry();
        const int top = caption.top() + caption.height() / 2 + 1;
        QCOMPARE(pixelOf(main, {caption.left() - 10, main->height() - 30}), rule);
        QCOMPARE(pixelOf(main, {main->width() - 18, main->height() - 30}), rule);
        QCOMPARE(pixelOf(main, {main->width() / 2, main->height() - 11}), rule);
        QCOMPARE(pixelOf(main, {main->width() - 25, top}), rule);
        QVERIFY(pixelOf(main, {caption.left() + 30, top}) != rule);
    }
};

TAVERO_TEST_GUI_MAIN(TestSettingsDialog)
#include "tst_settingsdialog.moc"
