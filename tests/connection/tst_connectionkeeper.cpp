#include "connection/connectionkeeper.h"
#include "support/fakeserverapi.h"
#include "support/testmain.h"

#include <QSignalSpy>

using tavero::ConnectionKeeper;
using tavero::test::FakeServerApi;

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

class TestConnectionKeeper : public QObject {
    Q_OBJECT
private slots:
    // Protected answers, and answers that cannot be read, are no break: the checks go on.
    void noBreakWithoutAVerdict_data()
    {
        QTest::addColumn<int>("status");
        QTest::newRow("protected") << int(RequestResult::Ok);
        QTest::newRow("unreadable") << int(RequestResult::InvalidResponse);
    }
    void noBreakWithoutAVerdict()
    {
        QFETCH(int, status);
        FakeServerApi api;
        api.ipResult = answer(status, status == RequestResult::Ok);
        ConnectionKeeper keeper(api, intervalMs);
        QSignalSpy breaks(&keeper, &ConnectionKeeper::breakDetected);
        keeper.start();
        QCOMPARE(api.calls("receiveIp"), 0); // the first check comes one interval later
        QTRY_VERIFY(api.calls("receiveIp") >= 3);
        QVERIFY(breaks.isEmpty());
        QVERIFY(keeper.isRunning());
    }

    void badAnswerIsReportedOnceWithItsReason_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("isProtected");
        QTest::addColumn<int>("reason");
        QTest::newRow("seen unprotected")
            << int(RequestResult::Ok) << false << int(ConnectionKeeper::NotProtected);
        QTest::newRow("no reply") << int(RequestResult::NoInternet) << false
                                  << int(ConnectionKeeper::NoNetwork);
        QTest::newRow("server error")
            << int(RequestResult::ServerError) << false << int(ConnectionKeeper::NotProtected);
        QTest::newRow("failed but claims protected")
            << int(RequestResult::ServerError) << true << int(ConnectionKeeper::NotProtected);
    }
    void badAnswerIsReportedOnceWithItsReason()
    {
        QFETCH(int, status);
        QFETCH(bool, isProtected);
        QFETCH(int, reason);
        FakeServerApi api;
        api.ipResult = answer(status, isProtected);
        ConnectionKeeper keeper(api, intervalMs);
        QSignalSpy breaks(&keeper, &ConnectionKeeper::breakDetected);
        keeper.start();
        QTRY_COMPARE(breaks.count(), 1);
        QCOMPARE(breaks.at(0).at(0).value<ConnectionKeeper::BreakReason>(),
                 ConnectionKeeper::BreakReason(reason));
        QVERIFY(!keeper.isRunning());
        const int callsAfterBreak = api.calls("receiveIp");
        QTest::qWait(5 * intervalMs);
        QCOMPARE(api.calls("receiveIp"), callsAfterBreak);
        QCOMPARE(breaks.count(), 1);
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
        FakeServerApi api;
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

    void slowRepliesNeverOverlap()
    {
        FakeServerApi api;
        api.ipResult = answer(RequestResult::Ok, true);
        ConnectionKeeper keeper(api, intervalMs);
        int inFlight = 0;
        int mostInFlight = 0;
        // Each reply takes several intervals; ticks keep arriving through the nested loop.
        api.onCall("receiveIp", [&] {
            ++inFlight;
            mostInFlight = std::max(mostInFlight, inFlight);
            QTest::qWait(4 * intervalMs);
            --inFlight;
        });
        keeper.start();
        QTRY_VERIFY(api.calls("receiveIp") >= 3);
        QCOMPARE(mostInFlight, 1);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestConnectionKeeper)
#include "tst_connectionkeeper.moc"
