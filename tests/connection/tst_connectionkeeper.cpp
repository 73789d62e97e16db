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
    // Protected answers, and answers that cannot be read, are no break: the checks go on. A bad
    // answer is reported once, with its reason, and ends the checks.
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
        FakeServerApi api;
        api.ipResult = answer(status, isProtected);
        ConnectionKeeper keeper(api, intervalMs);
        QSignalSpy breaks(&keeper, &ConnectionKeeper::breakDetected);
        keeper.start();
        QCOMPARE(api.calls("receiveIp"), 0); // the first check comes one interval later
        if (reason < 0) {
            QTRY_VERIFY(api.calls("receiveIp") >= 3);
            QVERIFY(breaks.isEmpty() && keeper.isRunning());
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
