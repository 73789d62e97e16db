#include "support/testmain.h"
#include "support/testplatform.h"

#include <QtConcurrent>

using tavero::test::TestPlatform;

// The scripted platform other engine tests stand on: it must record faithfully and answer as told.
class TestTestPlatform : public QObject {
    Q_OBJECT
private slots:
    void recordsEveryCallInOrderWithItsArguments()
    {
        TestPlatform platform;
        platform.connectL2tp("h1", "u", "p", "k");
        platform.connectIKEv2("h2", "u2", "p2", true);
        platform.disconnect();
        platform.setRunOnStart(true);
        QCOMPARE(platform.callNames(),
                 QStringList({"connectL2tp", "connectIKEv2", "disconnect", "setRunOnStart"}));
        const QVector<TestPlatform::Call> calls = platform.calls();
        QCOMPARE(calls.at(0).arguments, QVariantList({"h1", "u", "p", "k"}));
        QCOMPARE(calls.at(1).arguments, QVariantList({"h2", "u2", "p2", true}));
        QCOMPARE(calls.at(3).arguments, QVariantList({true}));
        QCOMPARE(platform.callCount("connectIKEv2"), 1);
        platform.clearCalls();
        QVERIFY(platform.calls().isEmpty());
    }

    void scriptedAnswersComeFirstThenTheDefaults()
    {
        TestPlatform platform;
        platform.queueResult("connectIKEv2", OperationResult(QStringLiteral("first")));
        platform.queueResult("connectIKEv2", OperationResult(QStringLiteral("second")));
        platform.queueAnswer("pptpSupports", false);
        QCOMPARE(platform.connectIKEv2("h", "u", "p", false).message, QStringLiteral("first"));
        QCOMPARE(platform.connectIKEv2("h", "u", "p", false).message, QStringLiteral("second"));
        QVERIFY(platform.connectIKEv2("h", "u", "p", false).isSuccess);
        QVERIFY(platform.connectPptp("h", "u", "p").isSuccess); // queues are per operation
        QVERIFY(!platform.pptpSupports());
        QVERIFY(platform.pptpSupports());
        QVERIFY(platform.l2tpSupports() && platform.isPptpAsync() && platform.isL2tpAsync());
    }

    void networkSwitchBehavesLikeAMachine()
    {
        TestPlatform platform;
        bool reenabled = true;
        const OperationResult nothingOff = platform.turnOnInternet(reenabled);
        QVERIFY(!nothingOff.isSuccess);
        QCOMPARE(nothingOff.message, QStringLiteral("warning.failed_to_turn_on_the_internet"));
        QVERIFY(!reenabled);

        QVERIFY(platform.turnOffInternet().isSuccess);
        QVERIFY(platform.haveDisabledNetDevicesByKillSwitch());
        QVERIFY(platform.turnOnNetDevices());
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        QVERIFY(!platform.turnOnNetDevices());

        // Scripted: the switch-off "fails" yet cuts, and the switch-on reports nothing came back.
        platform.queueResult("turnOffInternet", OperationResult(QStringLiteral("off failed")));
        platform.queueAnswer("turnOnInternet", false);
        QCOMPARE(platform.turnOffInternet().message, QStringLiteral("off failed"));
        QVERIFY(platform.isNetworkOff());
        QVERIFY(platform.turnOnInternet(reenabled).isSuccess);
        QVERIFY(!reenabled);
    }

    void heldConnectWaitsOnItsWorkerUntilReleased()
    {
        TestPlatform platform;
        platform.holdConnects();
        platform.queueResult("connectIKEv2", OperationResult(QStringLiteral("late")));
        QFuture<OperationResult> dial =
            QtConcurrent::run([&platform] { return platform.connectIKEv2("h", "u", "p", true); });
        QVERIFY(platform.waitForCall("connectIKEv2"));
        QVERIFY2(!dial.isFinished(), "a held connect cannot have answered");
        QVERIFY(platform.disconnect().isSuccess); // other operations are not held
        platform.releaseConnects();
        dial.waitForFinished();
        QCOMPARE(dial.result().message, QStringLiteral("late"));
        QVERIFY(!platform.waitForCall("connectPptp", 1, 0));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestTestPlatform)
#include "tst_testplatform.moc"
