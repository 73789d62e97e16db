#include "app/settings.h"
#include "connection/connectionkeeper.h"
#include "connection/killswitcher.h"
#include "support/fakeserverapi.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QSignalSpy>
#include <memory>

using tavero::ConnectionKeeper;
using tavero::KillSwitcher;
using tavero::Settings;
using tavero::test::FakeServerApi;
using tavero::test::TestPlatform;

namespace {
constexpr int intervalMs = 20;

IpGettingResult answer(int status, bool isProtected)
{
    IpGettingResult ip;
    ip.status = status;
    ip.isProtected = isProtected;
    return ip;
}
} // namespace

// What the chain watches a tunnel with and acts on a break with: the keeper's checks, and the
// kill switcher over a scripted platform, with a clock the probes move on.
class TestConnectionKeeper : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeServerApi> m_api;
    std::unique_ptr<TestPlatform> m_platform;
    std::unique_ptr<Settings> m_settings;
    qint64 m_nowMs = 0;

    std::unique_ptr<KillSwitcher> makeSwitcher()
    {
        return std::make_unique<KillSwitcher>(*m_api, *m_platform, *m_settings,
                                              [this] { return m_nowMs; });
    }

private slots:
    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        m_api = std::make_unique<FakeServerApi>();
        m_platform = std::make_unique<TestPlatform>();
        m_settings = std::make_unique<Settings>();
        m_nowMs = 0;
    }

    // Protected answers, and answers that cannot be read, are no break: the checks go on. A bad
    // answer is reported once, with its reason, and ends the checks. Every reply takes several
    // intervals, whose ticks arrive through the nested loop: the checks never overlap.
    void verdicts_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("isProtected");
        QTest::addColumn<int>("reason"); // -1: no break
        const auto row = [](const char* name, int status, bool isProtected, int reason) {
            QTest::newRow(name) << status << isProtected << reason;
        };
        const int notProtected = ConnectionKeeper::NotProtected;
        row("protected", RequestResult::Ok, true, -1);
        row("unreadable", RequestResult::InvalidResponse, false, -1);
        row("seen unprotected", RequestResult::Ok, false, notProtected);
        row("no reply", RequestResult::NoInternet, false, ConnectionKeeper::NoNetwork);
        row("server error", RequestResult::ServerError, false, notProtected);
        row("failed but claims protected", RequestResult::ServerError, true, notProtected);
    }
    void verdicts()
    {
        QFETCH(int, status);
        QFETCH(bool, isProtected);
        QFETCH(int, reason);
        FakeServerApi& api = *m_api;
        api.ipResult = answer(status, isProtected);
        ConnectionKeeper keeper(api, intervalMs);
        QSignalSpy breaks(&keeper, &ConnectionKeeper::breakDetected);
        int inFlight = 0;
        int mostInFlight = 0;
        api.onCall("receiveIp", [&] {
            mostInFlight = std::max(mostInFlight, ++inFlight);
            QTest::qWait(4 * intervalMs);
            --inFlight;
        });
        keeper.start();
        QCOMPARE(api.calls("receiveIp"), 0); // the first check comes one interval later
        if (reason < 0) {
            QTRY_VERIFY(api.calls("receiveIp") >= 3);
            QVERIFY(breaks.isEmpty() && keeper.isRunning());
            QCOMPARE(mostInFlight, 1);
            return;
        }
        QTRY_COMPARE(breaks.count(), 1);
        QCOMPARE(breaks.at(0).at(0).value<ConnectionKeeper::BreakReason>(),
                 ConnectionKeeper::BreakReason(reason));
        QVERIFY(!keeper.isRunning());
        const int callsAfterBreak = api.calls("receiveIp");
        QTest::qWait(5 * intervalMs);
        QCOMPARE(api.calls("receiveIp"), callsAfterBreak);
        QCOMPARE(breaks.count(), 1);
        QCOMPARE(mostInFlight, 1);
    }

    // The chain stops the keeper (a disconnect) or restarts it (a new tunnel after a server
    // change) while a check waits for its reply: that answer is about the old tunnel and is
    // dropped; a restarted keeper goes on checking the new one.
    void answerOfAnEarlierRunIsDropped_data()
    {
        QTest::addColumn<bool>("restart");
        QTest::newRow("stopped") << false;
        QTest::newRow("restarted for a new tunnel") << true;
    }
    void answerOfAnEarlierRunIsDropped()
    {
        QFETCH(bool, restart);
        FakeServerApi& api = *m_api;
        ConnectionKeeper keeper(api, intervalMs);
        QSignalSpy breaks(&keeper, &ConnectionKeeper::breakDetected);
        api.onCall("receiveIp", [&] {
            const bool first = api.calls("receiveIp") == 1;
            api.ipResult = answer(RequestResult::Ok, !first); // only the stale answer is bad
            if (first) {
                keeper.stop();
                if (restart)
                    keeper.start();
            }
        });
        keeper.start();
        QTRY_VERIFY(api.calls("receiveIp") >= (restart ? 3 : 1));
        QVERIFY(breaks.isEmpty());
        QCOMPARE(keeper.isRunning(), restart);
    }

    // Each probe takes `probeMs`; the network is back at probe `backAt` (0: never). A limit of
    // 15 s is not over at 15 whole seconds: the probe at 16 s gives up.
    void restoreWaitsForConnectivity_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("probeMs");
        QTest::addColumn<int>("backAt");
        QTest::addColumn<int>("probes");
        QTest::newRow("back at the third probe") << 30 << 1000 << 3 << 3;
        QTest::newRow("never back") << 15 << 4000 << 0 << 4;
    }
    void restoreWaitsForConnectivity()
    {
        QFETCH(int, limit);
        QFETCH(int, probeMs);
        QFETCH(int, backAt);
        QFETCH(int, probes);
        m_settings->setKillSwitch(true);
        auto switcher = makeSwitcher();
        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        m_api->internet = false;
        m_api->onCall("isThereInternet", [&] {
            m_nowMs += probeMs;
            m_api->internet = backAt > 0 && m_api->calls("isThereInternet") >= backAt;
        });
        if (backAt == 0)
            QTest::ignoreMessage(QtWarningMsg, "Internet started after killswitch");
        QCOMPARE(switcher->startInternet(limit), backAt > 0);
        QCOMPARE(m_api->calls("isThereInternet"), probes);
        QCOMPARE(switcher->state(), KillSwitcher::InternetOn);
        QVERIFY(!m_platform->isNetworkOff());
        // Once restored, later calls answer at once without the platform.
        QVERIFY(switcher->startInternet(limit));
        QCOMPARE(m_platform->callCount("turnOnInternet"), 1);
    }

    void nestedRestoreDuringTheWaitReturnsAtOnce()
    {
        m_settings->setKillSwitch(true);
        auto switcher = makeSwitcher();
        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        bool nested = false;
        m_api->onCall("isThereInternet", [&] {
            if (m_api->calls("isThereInternet") == 1)
                nested = switcher->startInternet(30); // a user action during the wait
        });
        QVERIFY(switcher->startInternet(30));
        QVERIFY(nested);
        QCOMPARE(m_platform->callCount("turnOnInternet"), 1);
    }

    // The state follows what the platform reports it really switched: a cut that switched nothing
    // is no cut; a restore that left connections off is reported, keeps the state and is tried
    // again, by the next restore as by the end of the program.
    void stateFollowsWhatThePlatformDid()
    {
        m_settings->setKillSwitch(true);
        auto switcher = makeSwitcher();
        m_platform->queueResult("turnOffInternet", OperationResult(QString("denied")));
        m_platform->queueAnswer("haveDisabledNetDevicesByKillSwitch", false);
        QTest::ignoreMessage(QtCriticalMsg, "The kill switch could not cut the network: denied");
        switcher->stopInternet();
        QVERIFY(!switcher->isInternetOff());

        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        QVERIFY(switcher->isInternetOff());
        m_platform->queueAnswer("haveDisabledNetDevicesByKillSwitch", true);
        const QRegularExpression notRestored("^Could not switch the network back on");
        QTest::ignoreMessage(QtCriticalMsg, notRestored);
        QVERIFY(!switcher->startInternet(30));
        QVERIFY(switcher->isInternetOff());
        QVERIFY(!switcher->canInternetOff());
        switcher->startInternet(30);
        QCOMPARE(m_platform->callCount("turnOnInternet"), 2);
        QCOMPARE(switcher->state(), KillSwitcher::InternetOn);

        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        for (int i = 0; i < 3; ++i)
            m_platform->queueAnswer("haveDisabledNetDevicesByKillSwitch", true);
        QTest::ignoreMessage(QtCriticalMsg, "The network connections switched off by the kill "
                                            "switch could not be switched on");
        switcher.reset();
        QCOMPARE(m_platform->callCount("turnOnNetDevices"), 3);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestConnectionKeeper)
#include "tst_connectionkeeper.moc"
