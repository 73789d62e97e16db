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

    void waitCursorDisablesOnlyWhenAskedAndOnlyTheCurrentPage()
    {
        QWidget page;
        QWidget other;
        ViewManagerUtils utils;

        // Without a current page there is nothing to disable.
        utils.showWaitCursor(true);
        utils.restoreCursor();

        utils.setParentForMessages(&page);
        utils.showWaitCursor(false);
        QVERIFY(page.isEnabled());
        QVERIFY(other.isEnabled());
        utils.restoreCursor();
        QVERIFY(page.isEnabled());
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

    void unmatchedRestoreDoesNotUnbalanceLaterNesting()
    {
        QWidget page;
        ViewManagerUtils utils;
        utils.setParentForMessages(&page);
        utils.restoreCursor();
        QCOMPARE(utils.waitCursorDepth(), 0);

        utils.showWaitCursor(true);
        utils.showWaitCursor(true);
        utils.restoreCursor();
        QVERIFY(!page.isEnabled());
        utils.restoreCursor();
        QVERIFY(page.isEnabled());
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
        QTest::newRow("standard Ok") << Buttons(QMessageBox::Ok) << "OK" << QStringList{"OK"}
                                     << QMessageBox::Ok << QMessageBox::NoButton << QString();
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

    void eachKindShowsItsIconTitleAndText_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QMessageBox::Icon>("icon");
        QTest::newRow("information") << 0 << QMessageBox::Information;
        QTest::newRow("question") << 1 << QMessageBox::Question;
        QTest::newRow("warning") << 2 << QMessageBox::Warning;
        QTest::newRow("critical") << 3 << QMessageBox::Critical;
    }

    void eachKindShowsItsIconTitleAndText()
    {
        QFETCH(int, kind);
        QFETCH(QMessageBox::Icon, icon);

        ViewManagerUtils utils;
        IViewManagerUtils& boxes = utils;
        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        using Show = Button (IViewManagerUtils::*)(const QString&, const QString&, Buttons, Button);
        const Show show[] = {&IViewManagerUtils::information, &IViewManagerUtils::question,
                             &IViewManagerUtils::warning, &IViewManagerUtils::critical};
        QCOMPARE(
            (boxes.*show[kind])("TAVERO", "Something happened", QMessageBox::Ok, QMessageBox::Ok),
            QMessageBox::Ok);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().first().icon, icon);
        QCOMPARE(driver.seen().first().title, QString("TAVERO"));
        QCOMPARE(driver.seen().first().text, QString("Something happened"));
        QCOMPARE(driver.seen().first().defaultButton, QString("OK"));
    }
};

TAVERO_TEST_GUI_MAIN(TestViewManagerUtils)
#include "tst_viewmanagerutils.moc"
