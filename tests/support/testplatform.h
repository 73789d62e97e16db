#pragma once

#include "platform/iplatform.h"

#include <QHash>
#include <QMutex>
#include <QQueue>
#include <QStringList>
#include <QVariantList>
#include <QVector>
#include <QWaitCondition>

namespace tavero::test {

// A platform for engine tests. Every operation records its call (name and arguments, in call
// order) and answers from a queue scripted per operation; with the queue empty it answers like a
// small machine of its own:
//   - connect*, disconnect: success;
//   - pptpSupports, l2tpSupports, isPptpAsync, isL2tpAsync: true;
//   - isRunOnStart: the last value given to setRunOnStart (false at first);
//   - turnOffInternet: success, and the network counts as switched off;
//   - turnOnInternet: when switched off, success with reenabled true; otherwise the failure
//     "warning.failed_to_turn_on_the_internet" with reenabled false; either way the network then
//     counts as on;
//   - haveDisabledNetDevicesByKillSwitch: whether the network counts as switched off;
//   - turnOnNetDevices: like turnOnInternet, returning its reenabled (it has its own queue).
// Operation names are the method names ("connectIKEv2"). Safe to use from several threads: the
// connect operations may run on a worker thread.
class TestPlatform : public IPlatform {
public:
    struct Call {
        QString operation;
        QVariantList arguments;
    };

    TestPlatform() = default;
    ~TestPlatform() override;

    // The next answer of an operation that returns an OperationResult (disconnect, connect*,
    // turnOffInternet, turnOnInternet).
    void queueResult(const QString& operation, const OperationResult& result);
    // The next answer of an operation that returns a bool; for "turnOnInternet" it is the next
    // `reenabled` (so both may be scripted for one call).
    void queueAnswer(const QString& operation, bool answer);

    // While held, the three connect operations wait (after recording their call) until
    // releaseConnects() or the object's destruction.
    void holdConnects();
    void releaseConnects();
    // Every connect operation takes this long before answering (0: answers at once).
    void setConnectDelay(int milliseconds);

    QVector<Call> calls() const;
    QStringList callNames() const;
    int callCount(const QString& operation) const;
    void clearCalls();
    // Whether the scripted machine's network counts as switched off.
    bool isNetworkOff() const;

    bool isRunOnStart() override;
    void setRunOnStart(bool run) override;
    bool pptpSupports() override { return answer("pptpSupports", true); }
    bool l2tpSupports() override { return answer("l2tpSupports", true); }
    bool isPptpAsync() override { return answer("isPptpAsync", true); }
    bool isL2tpAsync() override { return answer("isL2tpAsync", true); }
    OperationResult disconnect() override { return result("disconnect", {}); }
    OperationResult connectPptp(const QString& host, const QString& user,
                                const QString& password) override
    {
        return connectCall("connectPptp", {host, user, password});
    }
    OperationResult connectL2tp(const QString& host, const QString& user, const QString& password,
                                const QString& preSharedKey) override
    {
        return connectCall("connectL2tp", {host, user, password, preSharedKey});
    }
    OperationResult connectIKEv2(const QString& host, const QString& user, const QString& password,
                                 bool withoutAdminRights) override
    {
        return connectCall("connectIKEv2", {host, user, password, withoutAdminRights});
    }
    OperationResult turnOffInternet() override;
    OperationResult turnOnInternet(bool& reenabled) override;
    bool haveDisabledNetDevicesByKillSwitch() override
    {
        return answer("haveDisabledNetDevicesByKillSwitch", isNetworkOff());
    }
    bool turnOnNetDevices() override { return answer("turnOnNetDevices", switchOn()); }

private:
    // Record the call (unless `recorded`) and take the next scripted answer, else `fallback`.
    bool answer(const char* operation, bool fallback, bool recorded = false);
    OperationResult result(const char* operation, const OperationResult& fallback,
                           bool recorded = false);
    template <typename T>
    T take(QHash<QString, QQueue<T>>& queues, const char* operation, const T& fallback,
           bool recorded);
    void record(const QString& operation, const QVariantList& arguments);
    OperationResult connectCall(const char* operation, const QVariantList& arguments);
    // Counts the network as on; returns whether it was off.
    bool switchOn();

    mutable QMutex m_mutex;
    mutable QWaitCondition m_changed;
    QVector<Call> m_calls;
    QHash<QString, QQueue<OperationResult>> m_results;
    QHash<QString, QQueue<bool>> m_answers;
    bool m_runOnStart = false;
    bool m_networkOff = false;
    bool m_held = false;
    int m_connectDelayMs = 0;
};

} // namespace tavero::test
