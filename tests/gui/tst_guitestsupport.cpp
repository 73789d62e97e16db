#include "support/fakeviewmanager.h"
#include "support/testmain.h"

using tavero::test::FakeViewManager;
using tavero::test::FakeViewManagerUtils;

// The recording fakes that later page and controller tests rely on.
class TestGuiTestSupport : public QObject {
    Q_OBJECT

private slots:
    void utilsAnswerFromTheQueueAndRecordEveryBox()
    {
        FakeViewManager viewManager;
        FakeViewManagerUtils& fake = viewManager.fakeUtils();
        IViewManagerUtils* utils = viewManager.utils();
        QCOMPARE(utils, static_cast<IViewManagerUtils*>(&fake));

        fake.enqueueAnswer(QMessageBox::Cancel);
        fake.enqueueAnswer(QMessageBox::Ok);
        QCOMPARE(utils->warning("TAVERO", "first", QMessageBox::Yes | QMessageBox::No,
                                QMessageBox::NoButton),
                 QMessageBox::Cancel);
        QCOMPARE(utils->critical("Attention", "second", QMessageBox::Ok, QMessageBox::Ok),
                 QMessageBox::Ok);
        QCOMPARE(utils->information("", "third", QMessageBox::Ok, QMessageBox::NoButton),
                 QMessageBox::NoButton);

        QCOMPARE(fake.texts(), (QStringList{"first", "second", "third"}));
        QCOMPARE(fake.unansweredBoxes(), 1);
        QCOMPARE(fake.pendingAnswers(), 0);
        const FakeViewManagerUtils::Box& first = fake.boxes().at(0);
        QCOMPARE(first.kind, FakeViewManagerUtils::Kind::Warning);
        QCOMPARE(first.title, QString("TAVERO"));
        QCOMPARE(first.buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(fake.boxes().at(1).kind, FakeViewManagerUtils::Kind::Critical);
        QCOMPARE(fake.boxes().at(1).defaultButton, QMessageBox::Ok);
    }

    void utilsTrackTheWaitCursorNesting()
    {
        FakeViewManagerUtils utils;
        utils.showWaitCursor(true);
        utils.showWaitCursor(false);
        utils.restoreCursor();
        QCOMPARE(utils.waitCursorDepth(), 1);
        utils.restoreCursor();
        utils.restoreCursor();
        QCOMPARE(utils.waitCursorDepth(), 0);
        QCOMPARE(utils.maxWaitCursorDepth(), 2);
        QCOMPARE(utils.disablingWaitCursors(), 1);
    }

    void viewManagerRecordsNavigationInOrder()
    {
        FakeViewManager viewManager;
        viewManager.setCheckUpdateAnswer(true);
        QVERIFY(viewManager.checkUpdateDlg());
        viewManager.goToSplashScreen();
        viewManager.show();
        viewManager.goToStatus(true);
        viewManager.goToSettings();
        viewManager.goToServerSelection();
        viewManager.goToStatus(false);
        viewManager.setPreloadFinished();

        QCOMPARE(viewManager.calls(),
                 (QStringList{"checkUpdateDlg", "goToSplashScreen", "show", "goToStatus(true)",
                              "goToSettings", "goToServerSelection", "goToStatus(false)",
                              "setPreloadFinished"}));
        QCOMPARE(viewManager.currentPage(), QString("goToStatus(false)"));

        viewManager.bubleMessageProvider()->showBubbleMessage("VPN connected",
                                                              QSystemTrayIcon::Information, 10000);
        QCOMPARE(viewManager.fakeBubbles().bubbles().size(), 1);
        QCOMPARE(viewManager.fakeBubbles().bubbles().first().milliseconds, 10000);
        QCOMPARE(viewManager.fakeBubbles().texts(), QStringList{"VPN connected"});
    }
};

TAVERO_TEST_GUI_MAIN(TestGuiTestSupport)
#include "tst_guitestsupport.moc"
