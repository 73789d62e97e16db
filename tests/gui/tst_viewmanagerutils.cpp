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

        const Buttons yesNo = QMessageBox::Yes | QMessageBox::No;
        QTest::newRow("yes answers Ok")
            << yesNo << "YES" << QStringList{"No", "YES"} << QMessageBox::Ok;
        QTest::newRow("no answers Cancel")
            << yesNo << "No" << QStringList{"No", "YES"} << QMessageBox::Cancel;
        QTest::newRow("yes beside standard Cancel")
            << (QMessageBox::Yes | QMessageBox::Cancel) << "Cancel" << QStringList{"Cancel", "YES"}
            << QMessageBox::Cancel;
        QTest::newRow("standard Ok")
            << Buttons(QMessageBox::Ok) << "OK" << QStringList{"OK"} << QMessageBox::Ok;
        QTest::newRow("standard Retry") << (QMessageBox::Retry | QMessageBox::Abort) << "Retry"
                                        << QStringList{"Abort", "Retry"} << QMessageBox::Retry;
    }

    void answers()
    {
        QFETCH(Buttons, buttons);
        QFETCH(QString, click);
        QFETCH(QStringList, shownButtons);
        QFETCH(Button, expected);

        ViewManagerUtils utils;
        MessageBoxDriver driver;
        driver.clickOnNextBox(click);
        const Button answer = utils.question("Title", "Really?", buttons, QMessageBox::NoButton);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(answer, expected);

        QCOMPARE(driver.seen().size(), 1);
        QStringList seenButtons = driver.seen().first().buttons;
        seenButtons.sort();
        QCOMPARE(seenButtons, shownButtons);
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
        QCOMPARE((boxes.*show[kind])("TAVERO", "Something happened", QMessageBox::Ok,
                                     QMessageBox::NoButton),
                 QMessageBox::Ok);
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().first().icon, icon);
        QCOMPARE(driver.seen().first().title, QString("TAVERO"));
        QCOMPARE(driver.seen().first().text, QString("Something happened"));
    }

    void defaultYesOrNoMeansTheReplacingButton_data()
    {
        QTest::addColumn<Button>("defaultButton");
        QTest::addColumn<QString>("expected");
        QTest::newRow("yes") << QMessageBox::Yes << "YES";
        QTest::newRow("no") << QMessageBox::No << "No";
    }

    void defaultYesOrNoMeansTheReplacingButton()
    {
        QFETCH(Button, defaultButton);
        QFETCH(QString, expected);

        ViewManagerUtils utils;
        MessageBoxDriver driver;
        driver.clickOnNextBox("No");
        utils.warning("", "Continue?", QMessageBox::Yes | QMessageBox::No, defaultButton);
        QCOMPARE(driver.seen().first().defaultButton, expected);
    }

    void boxesInSequenceAreAnsweredInOrder()
    {
        ViewManagerUtils utils;
        MessageBoxDriver driver;
        driver.clickOnNextBox("No");
        driver.clickOnNextBox("YES");
        const Buttons yesNo = QMessageBox::Yes | QMessageBox::No;
        QCOMPARE(utils.question("", "first", yesNo, QMessageBox::NoButton), QMessageBox::Cancel);
        QCOMPARE(utils.question("", "second", yesNo, QMessageBox::NoButton), QMessageBox::Ok);
        QCOMPARE(driver.pending(), 0);
        QCOMPARE(driver.seen().size(), 2);
        QCOMPARE(driver.seen().at(1).text, QString("second"));
    }
};

TAVERO_TEST_GUI_MAIN(TestViewManagerUtils)
#include "tst_viewmanagerutils.moc"
