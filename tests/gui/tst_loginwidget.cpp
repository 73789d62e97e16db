// The login page against a real login controller and VPN manager over a scripted service: the
// emptiness checks with their fixed boxes, the three ways to log in, the waiting signals, and
// what happens to the fields after success and failure.
#include "gui/pages/loginwidget.h"
#include "gui/shell/logincontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/messageboxdriver.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::MessageBoxDriver;
using tavero::test::ServerListMaker;

namespace {

enum class Trigger { Button, EnterInEmail, EnterInPassword };

// A login page with everything it talks to; the service accepts user@vpn.test.
struct LoginPage {
    ManagerFixture fixture;
    FakeViewManager viewManager;
    LoginController controller{fixture.manager(), viewManager};
    Gui::LoginWidget page{fixture.manager(), controller};
    QSignalSpy started{&page, &Gui::AbstractContentPage::aboutToStartWaiting};
    QSignalSpy stopped{&page, &Gui::AbstractContentPage::aboutToStopWaiting};
    QSignalSpy boxesShown{&page, &Gui::AbstractContentPage::messageBoxShowed};

    LoginPage()
    {
        const ServerListGettingResult list =
            ServerListMaker().country(1, "de", "Germany").server(1, "de-1", 10).list();
        fixture.answerReachable(list, list);
    }

    QLineEdit* email() { return page.findChild<QLineEdit*>("lineEditEmail"); }
    QLineEdit* password() { return page.findChild<QLineEdit*>("lineEditPassword"); }
    QPushButton* button() { return page.findChild<QPushButton*>("pushButtonEnter"); }

    void fill(const QString& emailText, const QString& passwordText)
    {
        email()->setText(emailText);
        password()->setText(passwordText);
    }

    void trigger(Trigger how)
    {
        switch (how) {
        case Trigger::Button:
            QTest::mouseClick(button(), Qt::LeftButton);
            break;
        case Trigger::EnterInEmail:
            QTest::keyClick(email(), Qt::Key_Return);
            break;
        case Trigger::EnterInPassword:
            QTest::keyClick(password(), Qt::Key_Enter);
            break;
        }
    }

    int loginRequests() { return fixture.api().calls("loginByEmail"); }
};

} // namespace

Q_DECLARE_METATYPE(Trigger)

class TestLoginWidget : public QObject {
    Q_OBJECT

private slots:
    void formHasTheDocumentedFields()
    {
        LoginPage login;
        QCOMPARE(login.email()->placeholderText(), QStringLiteral("label.your_email"));
        QCOMPARE(login.password()->placeholderText(), QStringLiteral("label.your_password"));
        QCOMPARE(login.password()->echoMode(), QLineEdit::Password);
        QCOMPARE(login.email()->echoMode(), QLineEdit::Normal);
        QCOMPARE(login.button()->text(), QStringLiteral("label.login"));
        QCOMPARE(login.page.findChild<QLabel*>("label")->text(),
                 QStringLiteral("label.authorization"));
        QVERIFY(login.email()->graphicsEffect());
        QVERIFY(login.password()->graphicsEffect());
        QVERIFY(login.email()->graphicsEffect() != login.password()->graphicsEffect());
        // Wide enough for its text with 36 pixels on either side.
        QCOMPARE(login.button()->minimumWidth(),
                 QFontMetrics(login.button()->font()).horizontalAdvance(login.button()->text()) +
                     72);
        QCOMPARE(login.page.maximumSize(), QSize(1080, 845));
    }

    void emptyFieldIsRefusedWithItsFixedBox_data()
    {
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("focused");
        QTest::newRow("no e-mail")
            << ""
            << "secret" << QString::fromUtf8("Введите, пожалуйста, e-mail.") << "lineEditEmail";
        QTest::newRow("neither") << ""
                                 << "" << QString::fromUtf8("Введите, пожалуйста, e-mail.")
                                 << "lineEditEmail";
        QTest::newRow("no password")
            << "user@vpn.test"
            << "" << QString::fromUtf8("Введите, пожалуйста, пароль.") << "lineEditPassword";
    }

    void emptyFieldIsRefusedWithItsFixedBox()
    {
        QFETCH(QString, email);
        QFETCH(QString, password);
        QFETCH(QString, text);
        QFETCH(QString, focused);

        LoginPage login;
        login.page.show();
        QVERIFY(QTest::qWaitForWindowActive(&login.page));
        login.fill(email, password);
        // Focus elsewhere first, so the page has to move it.
        (focused == "lineEditEmail" ? login.password() : login.email())->setFocus();

        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        login.trigger(Trigger::Button);

        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join("; ")));
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(driver.seen().first().title, QStringLiteral("TAVERO"));
        QCOMPARE(driver.seen().first().text, text);
        QCOMPARE(driver.seen().first().icon, QMessageBox::Warning);
        QCOMPARE(login.boxesShown.count(), 1);
        QCOMPARE(login.loginRequests(), 0);
        QCOMPARE(login.started.count(), 0);
        QTRY_VERIFY(login.page.focusWidget());
        QCOMPARE(login.page.focusWidget()->objectName(), focused);
    }

    void everyTriggerLogsInWithTheTextsAsTyped_data()
    {
        QTest::addColumn<Trigger>("how");
        QTest::addColumn<QString>("email");
        QTest::newRow("button") << Trigger::Button << "user@vpn.test";
        QTest::newRow("Enter in the e-mail field") << Trigger::EnterInEmail << "user@vpn.test";
        QTest::newRow("Enter in the password field") << Trigger::EnterInPassword << "user@vpn.test";
        // Only emptiness is checked: blanks are an e-mail as far as the page is concerned.
        QTest::newRow("e-mail of blanks") << Trigger::EnterInEmail << "   ";
        QTest::newRow("surrounding blanks kept") << Trigger::Button << " user@vpn.test ";
    }

    void everyTriggerLogsInWithTheTextsAsTyped()
    {
        QFETCH(Trigger, how);
        QFETCH(QString, email);

        LoginPage login;
        login.fill(email, " pass word ");
        login.trigger(how);

        QCOMPARE(login.loginRequests(), 1);
        QCOMPARE(login.fixture.api().lastEmail, email);
        QCOMPARE(login.fixture.api().lastPassword, QStringLiteral(" pass word "));
        QCOMPARE(login.started.count(), 1);
        QCOMPARE(login.stopped.count(), 1);
        QCOMPARE(login.viewManager.currentPage(), QStringLiteral("goToStatus(true)"));
        QCOMPARE(login.boxesShown.count(), 0);
        // Cleared for the next time the page shows (after a log-out).
        QVERIFY(login.email()->text().isEmpty());
        QVERIFY(login.password()->text().isEmpty());
    }

    void waitingSignalsSurroundTheRequest()
    {
        LoginPage login;
        QStringList order;
        QObject::connect(&login.page, &Gui::AbstractContentPage::aboutToStartWaiting,
                         [&] { order << "start"; });
        QObject::connect(&login.page, &Gui::AbstractContentPage::aboutToStopWaiting,
                         [&] { order << "stop"; });
        login.fixture.api().onCall("loginByEmail", [&] { order << "request"; });
        login.fill("user@vpn.test", "secret");
        login.trigger(Trigger::Button);
        QCOMPARE(order, (QStringList{"start", "request", "stop"}));
    }

    void failedLoginKeepsTheFields()
    {
        LoginPage login;
        login.fixture.api().loginResult.status = RequestResult::ServerError;
        login.fixture.api().loginResult.message = QStringLiteral("invalid_user_credentials");
        login.fill("user@vpn.test", "wrong");
        login.trigger(Trigger::EnterInPassword);

        QCOMPARE(login.loginRequests(), 1);
        QCOMPARE(login.email()->text(), QStringLiteral("user@vpn.test"));
        QCOMPARE(login.password()->text(), QStringLiteral("wrong"));
        QCOMPARE(login.boxesShown.count(), 1);
        QCOMPARE(login.started.count(), 1);
        QCOMPARE(login.stopped.count(), 1);
        QCOMPARE(login.viewManager.currentPage(), QString());
        // The refusal itself came from the controller.
        QCOMPARE(login.viewManager.fakeUtils().boxes().size(), 1);
        QCOMPARE(login.viewManager.fakeUtils().texts().first(),
                 QStringLiteral("warning.login_or_pass_are_incorrect"));
    }

    void unreachableServiceKeepsTheFields()
    {
        LoginPage login;
        login.fixture.api().loginResult.status = RequestResult::NoInternet;
        login.fill("user@vpn.test", "secret");
        login.trigger(Trigger::Button);
        QCOMPARE(login.email()->text(), QStringLiteral("user@vpn.test"));
        QCOMPARE(login.password()->text(), QStringLiteral("secret"));
        QCOMPARE(login.boxesShown.count(), 1);
    }
};

TAVERO_TEST_GUI_MAIN(TestLoginWidget)
#include "tst_loginwidget.moc"
