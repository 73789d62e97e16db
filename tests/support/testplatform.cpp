#include "support/testplatform.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <algorithm>

namespace tavero::test {
namespace {

const QStringList resultOperations{
    QStringLiteral("disconnect"),      QStringLiteral("connectPptp"),
    QStringLiteral("connectL2tp"),     QStringLiteral("connectIKEv2"),
    QStringLiteral("turnOffInternet"), QStringLiteral("turnOnInternet"),
};
const QStringList answerOperations{
    QStringLiteral("isRunOnStart"),     QStringLiteral("pptpSupports"),
    QStringLiteral("l2tpSupports"),     QStringLiteral("isPptpAsync"),
    QStringLiteral("isL2tpAsync"),      QStringLiteral("haveDisabledNetDevicesByKillSwitch"),
    QStringLiteral("turnOnNetDevices"), QStringLiteral("turnOnInternet"),
};

} // namespace

TestPlatform::~TestPlatform()
{
    releaseConnects();
}

void TestPlatform::queueResult(const QString& operation, const OperationResult& result)
{
    if (!resultOperations.contains(operation))
        qFatal("TestPlatform: %s does not return an OperationResult", qPrintable(operation));
    const QMutexLocker locker(&m_mutex);
    m_results[operation].enqueue(result);
}

void TestPlatform::queueAnswer(const QString& operation, bool answer)
{
    if (!answerOperations.contains(operation))
        qFatal("TestPlatform: %s takes no scripted bool", qPrintable(operation));
    const QMutexLocker locker(&m_mutex);
    m_answers[operation].enqueue(answer);
}

void TestPlatform::holdConnects()
{
    const QMutexLocker locker(&m_mutex);
    m_held = true;
}

void TestPlatform::releaseConnects()
{
    const QMutexLocker locker(&m_mutex);
    m_held = false;
    m_changed.wakeAll();
}

void TestPlatform::setConnectDelay(int milliseconds)
{
    const QMutexLocker locker(&m_mutex);
    m_connectDelayMs = milliseconds;
}

bool TestPlatform::waitForCall(const QString& operation, int count, int timeoutMs) const
{
    const QDeadlineTimer deadline(timeoutMs);
    QMutexLocker locker(&m_mutex);
    const auto calledEnough = [&] {
        return std::count_if(m_calls.cbegin(), m_calls.cend(), [&](const Call& call) {
                   return call.operation == operation;
               }) >= count;
    };
    while (!calledEnough()) {
        if (deadline.hasExpired())
            return false;
        // Calls made on this thread from queued work need the event loop to run.
        if (QThread::currentThread() == QCoreApplication::instance()->thread()) {
            locker.unlock();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            locker.relock();
            m_changed.wait(&m_mutex, 1);
        } else {
            m_changed.wait(&m_mutex, QDeadlineTimer(qMin<qint64>(deadline.remainingTime(), 50)));
        }
    }
    return true;
}

QVector<TestPlatform::Call> TestPlatform::calls() const
{
    const QMutexLocker locker(&m_mutex);
    return m_calls;
}

QStringList TestPlatform::callNames() const
{
    const QMutexLocker locker(&m_mutex);
    QStringList names;
    for (const Call& call : m_calls)
        names << call.operation;
    return names;
}

int TestPlatform::callCount(const QString& operation) const
{
    return callNames().count(operation);
}

void TestPlatform::clearCalls()
{
    const QMutexLocker locker(&m_mutex);
    m_calls.clear();
}

bool TestPlatform::isNetworkOff() const
{
    const QMutexLocker locker(&m_mutex);
    return m_networkOff;
}

void TestPlatform::record(const QString& operation, const QVariantList& arguments)
{
    const QMutexLocker locker(&m_mutex);
    m_calls.append({operation, arguments});
    m_changed.wakeAll();
}

bool TestPlatform::nextAnswer(const QString& operation, bool fallback)
{
    const QMutexLocker locker(&m_mutex);
    auto queue = m_answers.find(operation);
    return queue != m_answers.end() && !queue->isEmpty() ? queue->dequeue() : fallback;
}

OperationResult TestPlatform::nextResult(const QString& operation, const OperationResult& fallback)
{
    const QMutexLocker locker(&m_mutex);
    auto queue = m_results.find(operation);
    return queue != m_results.end() && !queue->isEmpty() ? queue->dequeue() : fallback;
}

bool TestPlatform::isRunOnStart()
{
    record(QStringLiteral("isRunOnStart"), {});
    bool stored = false;
    {
        const QMutexLocker locker(&m_mutex);
        stored = m_runOnStart;
    }
    return nextAnswer(QStringLiteral("isRunOnStart"), stored);
}

void TestPlatform::setRunOnStart(bool run)
{
    record(QStringLiteral("setRunOnStart"), {run});
    const QMutexLocker locker(&m_mutex);
    m_runOnStart = run;
}

bool TestPlatform::pptpSupports()
{
    record(QStringLiteral("pptpSupports"), {});
    return nextAnswer(QStringLiteral("pptpSupports"), true);
}

bool TestPlatform::l2tpSupports()
{
    record(QStringLiteral("l2tpSupports"), {});
    return nextAnswer(QStringLiteral("l2tpSupports"), true);
}

bool TestPlatform::isPptpAsync()
{
    record(QStringLiteral("isPptpAsync"), {});
    return nextAnswer(QStringLiteral("isPptpAsync"), true);
}

bool TestPlatform::isL2tpAsync()
{
    record(QStringLiteral("isL2tpAsync"), {});
    return nextAnswer(QStringLiteral("isL2tpAsync"), true);
}

OperationResult TestPlatform::disconnect()
{
    record(QStringLiteral("disconnect"), {});
    return nextResult(QStringLiteral("disconnect"), OperationResult());
}

OperationResult TestPlatform::connectCall(const QString& operation, const QVariantList& arguments)
{
    record(operation, arguments);
    int delayMs = 0;
    {
        QMutexLocker locker(&m_mutex);
        while (m_held)
            m_changed.wait(&m_mutex);
        delayMs = m_connectDelayMs;
    }
    if (delayMs > 0)
        QThread::msleep(static_cast<unsigned long>(delayMs));
    return nextResult(operation, OperationResult());
}

OperationResult TestPlatform::connectPptp(const QString& host, const QString& user,
                                          const QString& password)
{
    return connectCall(QStringLiteral("connectPptp"), {host, user, password});
}

OperationResult TestPlatform::connectL2tp(const QString& host, const QString& user,
                                          const QString& password, const QString& preSharedKey)
{
    return connectCall(QStringLiteral("connectL2tp"), {host, user, password, preSharedKey});
}

OperationResult TestPlatform::connectIKEv2(const QString& host, const QString& user,
                                           const QString& password, bool withoutAdminRights)
{
    return connectCall(QStringLiteral("connectIKEv2"), {host, user, password, withoutAdminRights});
}

OperationResult TestPlatform::turnOffInternet()
{
    record(QStringLiteral("turnOffInternet"), {});
    const OperationResult result = nextResult(QStringLiteral("turnOffInternet"), OperationResult());
    const QMutexLocker locker(&m_mutex);
    m_networkOff = true;
    return result;
}

bool TestPlatform::switchOn()
{
    const QMutexLocker locker(&m_mutex);
    const bool wasOff = m_networkOff;
    m_networkOff = false;
    return wasOff;
}

OperationResult TestPlatform::turnOnInternet(bool& reenabled)
{
    record(QStringLiteral("turnOnInternet"), {});
    const bool wasOff = switchOn();
    reenabled = nextAnswer(QStringLiteral("turnOnInternet"), wasOff);
    const OperationResult fallback =
        wasOff ? OperationResult()
               : OperationResult(QCoreApplication::translate(
                     "QObject", "warning.failed_to_turn_on_the_internet"));
    return nextResult(QStringLiteral("turnOnInternet"), fallback);
}

bool TestPlatform::haveDisabledNetDevicesByKillSwitch()
{
    record(QStringLiteral("haveDisabledNetDevicesByKillSwitch"), {});
    return nextAnswer(QStringLiteral("haveDisabledNetDevicesByKillSwitch"), isNetworkOff());
}

bool TestPlatform::turnOnNetDevices()
{
    record(QStringLiteral("turnOnNetDevices"), {});
    const bool wasOff = switchOn();
    return nextAnswer(QStringLiteral("turnOnNetDevices"), wasOff);
}

} // namespace tavero::test
