#include "platform/logger.h"

#include <QRecursiveMutex>
#include <cstdio>
#include <syslog.h>

namespace tavero {
namespace {

QRecursiveMutex& logLock()
{
    static QRecursiveMutex mutex;
    return mutex;
}

Logger::Sink& sink()
{
    static Logger::Sink instance;
    return instance;
}

// openlog() keeps the pointer, so the ident must outlive every later syslog() call.
QByteArray& ident()
{
    static QByteArray name("TAVERO");
    return name;
}

int priorityOf(LoggerSeverity severity)
{
    switch (severity) {
    case LoggerSeverity::Warning:
        return LOG_WARNING;
    case LoggerSeverity::Information:
        return LOG_INFO;
    case LoggerSeverity::Error:
        break;
    }
    return LOG_ERR;
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

void Logger::RegisterSource()
{
    const QMutexLocker locker(&logLock());
    RegisterSource(QStringLiteral("TAVERO"), QString());
}

bool Logger::RegisterSource(const QString& sourceName, const QString& /*messageFilePath*/)
{
    if (sourceName.isEmpty())
        return false;
    const QMutexLocker locker(&logLock());
    const QByteArray name = sourceName.toUtf8();
    if (name != ident()) {
        closelog();
        ident() = name;
    }
    openlog(ident().constData(), LOG_PID, LOG_USER);
    return true;
}

void Logger::WriteLog(const QString& message, LoggerSeverity severity)
{
    if (message.isEmpty())
        return;
    const QMutexLocker locker(&logLock());
    const QByteArray text = message.toUtf8();
    if (qEnvironmentVariableIntValue("TAVERO_LOG_STDERR") == 1)
        std::fprintf(stderr, "TAVERO[%s]: %s\n", severityName(severity), text.constData());
    if (sink()) {
        sink()(severity, message);
        return;
    }
    syslog(priorityOf(severity), "%s", text.constData());
}

void Logger::setSink(Sink newSink)
{
    const QMutexLocker locker(&logLock());
    sink() = std::move(newSink);
}

} // namespace tavero
