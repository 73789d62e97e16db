#include "platform/logger.h"

#include <QRecursiveMutex>
#include <cstdio>

namespace tavero {
namespace {

Logger::Sink& sink()
{
    static Logger::Sink instance;
    return instance;
}

const char* severityName(LoggerSeverity severity)
{
    switch (severity) {
    case LoggerSeverity::Warning:
        return "warning";
    case LoggerSeverity::Information:
        return "info";
    case LoggerSeverity::Error:
        break;
    }
    return "error";
}

} // namespace

QRecursiveMutex& Logger::lock()
{
    static QRecursiveMutex mutex;
    return mutex;
}

std::FILE*& Logger::stepStream()
{
    static std::FILE* stream = stdout;
    return stream;
}

void Logger::setStepStream(std::FILE* stream)
{
    const QMutexLocker locker(&lock());
    stepStream() = stream;
}

void Logger::RegisterSource()
{
    const QMutexLocker locker(&lock());
    reportRegistration(RegisterSource(QStringLiteral("TAVERO"), messageFilePath()));
}

void Logger::WriteLog(const QString& message, LoggerSeverity severity)
{
    if (message.isEmpty())
        return;
    const QMutexLocker locker(&lock());
    if (qEnvironmentVariableIntValue("TAVERO_LOG_STDERR") == 1) {
        std::fprintf(stderr, "TAVERO[%s]: %s\n", severityName(severity),
                     message.toUtf8().constData());
    }
    if (sink()) {
        sink()(severity, message);
        return;
    }
    writeToSystemLog(message, severity);
}

void Logger::setSink(Sink newSink)
{
    const QMutexLocker locker(&lock());
    sink() = std::move(newSink);
}

} // namespace tavero
