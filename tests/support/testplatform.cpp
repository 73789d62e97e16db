#include "support/testplatform.h"

#include <QCoreApplication>
#include <QThread>

namespace tavero::test {
TestPlatform::~TestPlatform()
{
    releaseConnects();
}

void TestPlatform::queueResult(const QString& operation, const OperationResult& result)
{
    const QMutexLocker locker(&m_mutex);
    m_results[operation].enqueue(result);
}

void TestPlatform::queueAnswer(const QString& operation, bool answer)
{
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

template <typename T>
T TestPlatform::take(QHash<QString, QQueue<T>>& queues, const char* operation, const T& fallback,
                     bool recorded)
{
    const QString name = QString::fromLatin1(operation);
    if (!recorded)
        record(name, {});
    const QMutexLocker locker(&m_mutex);
    auto queue = queues.find(name);
    return queue != queues.end() && !queue->isEmpty() ? queue->dequeue() : fallback;
}

bool TestPlatform::answer(const char* operation, bool fallback, bool recorded)
{
    return take(m_answers, operation, fallback, recorded);
}

OperationResult TestPlatform::result(const char* operation, const OperationResult& fallback,
                                     bool recorded)
{
    return take(m_results, operation, fallback, recorded);
}

bool TestPlatform::isRunOnStart()
{
    bool stored = false;
    {
        const QMutexLocker locker(&m_mutex);
        stored = m_runOnStart;
    }
    return answer("isRunOnStart", stored);
}

void TestPlatform::setRunOnStart(bool run)
{
    record(QStringLiteral("setRunOnStart"), {run});
    const QMutexLocker locker(&m_mutex);
    m_runOnStart = run;
}

OperationResult TestPlatform::connectCall(const char* operation, const QVariantList& arguments)
{
    record(QString::fromLatin1(operation), arguments);
    int delayMs = 0;
    {
        QMutexLocker locker(&m_mutex);
        while (m_held)
            m_changed.wait(&m_mutex);
        delayMs = m_connectDelayMs;
    }
    if (delayMs > 0)
        QThread::msleep(static_cast<unsigned long>(delayMs));
    return result(operation, {}, true);
}

OperationResult TestPlatform::turnOffInternet()
{
    const OperationResult answer = result("turnOffInternet", {});
    const QMutexLocker locker(&m_mutex);
    m_networkOff = true;
    return answer;
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
    reenabled = answer("turnOnInternet", wasOff, true);
    return result("turnOnInternet",
                  wasOff ? OperationResult()
                         : OperationResult(QCoreApplication::translate(
                               "QObject", "warning.failed_to_turn_on_the_internet")),
                  true);
}

} // namespace tavero::test
