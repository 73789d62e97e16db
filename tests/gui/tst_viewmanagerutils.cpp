#include "gui/shell/viewmanagerutils.h"
#include "support/maptranslator.h"
#include "support/messageboxdriver.h"
#include "support/testmain.h"

#include <QApplication>

using tavero::test::MapTranslator;
using tavero::test::MessageBoxDriver;

using Buttons = QMessageBox::StandardButtons;
using Button = QMessageBox::StandardButton;
Q_DECLARE_METATYPE(QMessageBox::StandardButton)

class TestViewManagerUtils : public QObject {
    Q_OBJECT

    MapTranslator m_translator;

private slots:
    void initTestCase()
    {
        m_translator.add("QObject", "action.yes", "YES").add("QObject", "action.no", "No");
        QCoreApplication::installTranslator(&m_translator);
    }

    void cleanup() { QVERIFY(!QApplication::overrideCursor()); }

    void nestedWaitCursorKeepsPageDisabledUntilTheOutermostRestore()
    {
        QWidget page;
        ViewManagerUtils utils;
        utils.setParentForMessages(&page);

        utils.showWaitCursor(true);
        utils.showWaitCursor(true);
        QVERIFY(!page.isEnabled());
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);

        utils.restoreCursor();
        QVERIFY(!page.isEnabled());
        QVERIFY(QApplication::overrideCursor());

        utils.restoreCursor();
        QVERIFY(page.isEnabled());
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(utils.waitCursorDepth(), 0);
    }

    // The page may change while an operation runs (a log-in that ends on the status page): the
    // page disabled at the start must still come back.
    void pageSwitchedDuringTheWaitIsReenabled()
    {
        QWidget login;
        QWidget status;
        ViewManagerUtils utils;
        utils.setParentForMessages(&login);
        utils.showWaitCursor(true);
        utils.setParentForMessages(&status);
        utils.restoreCursor();
        QVERIFY(login.isEnabled());
        QVERIFY(status.isEnabled());

        utils.showWaitCursor(true);
        utils.setParentForMessages(nullptr);
        utils.restoreCursor();
        QVERIFY(status.isEnabled());
    }

    void pageDestroyedDuringTheWaitIsSkipped()
    {
        ViewManagerUtils utils;
        auto page = std::make_unique<QWidget>();
        utils.setParentForMessages(page.get());
        utils.showWaitCursor(true);
        page.reset();
        QVERIFY(!utils.parentForMessages());
        utils.restoreCursor();
        QCOMPARE(utils.waitCursorDepth(), 0);
    }

    void destructionEndsAnOpenWait()
    {
        QWidget page;
        {
            ViewManagerUtils utils;
            utils.setParentForMessages(&page);
            utils.showWaitCursor(true);
            utils.showWaitCursor(false);
        }
        QVERIFY(page.isEnabled());
        QVERIFY(!QApplication::overrideCursor());
    }

    void answers_data()
    {
        QTest::addColumn<Buttons>("buttons");
        QTest::addColumn<QString>("click");
        QTest::addColumn<QStringList>("shownButtons");
        QTest::addColumn<Button>("expected");
        // A default Yes or No means the button that replaces it.
        QTest::addColumn<Button>("defaultButton");
        QTest::addColumn<QString>("shownDefault");

        const Buttons yesNo = QMessageBox::Yes | QMessageBox::No;
        QTest::newRow("yes answers Ok, default yes")
            << yesNo << "YES" << QStringList{"No", "YES"} << QMessageBox::Ok << QMessageBox::Yes
            << "YES";
        QTest::newRow("no answers Cancel, default no")
            << yesNo << "No" << QStringList{"No", "YES"} << QMessageBox::Cancel << QMessageBox::No
            << "No";
        QTest::newRow("yes beside standard Cancel")
            << (QMessageBox::Yes | QMessageBox::Cancel) << "Cancel" << QStringList{"Cancel", "YES"}
            << QMessageBox::Cancel << QMessageBox::NoButton << QString();
        QTest::newRow("standard Retry")
            << (QMessageBox::Retry | QMessageBox::Abort) << "Retry" << QStringList{"Abort", "Retry"}
            << QMessageBox::Retry << QMessageBox::NoButton << QString();
    }

    void answers()
    {
        QFETCH(Buttons, buttons);
        QFETCH(QString, click);
        QFETCH(QStringList, shownButtons);
        QFETCH(Button, expected);
        QFETCH(Button, defaultButton);

        ViewManagerUtils utils;
        MessageBoxDriver driver;
        driver.clickOnNextBox(click);
        const Button answer = utils.question("Title", "Really?", buttons, defaultButton);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(answer, expected);

        QCOMPARE(driver.seen().size(), 1);
        QStringList seenButtons = driver.seen().first().buttons;
        seenButtons.sort();
        QCOMPARE(seenButtons, shownButtons);
        QTEST(driver.seen().first().defaultButton, "shownDefault");
    }
};

TAVERO_TEST_GUI_MAIN(TestViewManagerUtils)
#include "tst_viewmanagerutils.moc"
