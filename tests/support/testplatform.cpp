#include "support/testplatform.h"

#include <QCoreApplication>
#include <QThread>

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

bool TestPlatform::answer(const char* operation, bool fallback, bool recorded)
{
    const QString name = QString::fromLatin1(operation);
    if (!recorded)
        record(name, {});
    const QMutexLocker locker(&m_mutex);
    auto queue = m_answers.find(name);
    return queue != m_answers.end() && !queue->isEmpty() ? queue->dequeue() : fallback;
}

OperationResult TestPlatform::result(const char* operation, const OperationResult& fallback,
                                     bool recorded)
{
    const QString name = QString::fromLatin1(operation);
    if (!recorded)
        record(name, {});
    const QMutexLocker locker(&m_mutex);
    auto queue = m_results.find(name);
    return queue != m_results.end() && !queue->isEmpty() ? queue->dequeue() : fallback;
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
