// The syslog half of tavero::Logger; the portable half is platform/logger.cpp.
#include "platform/logger.h"

#include <QRecursiveMutex>
#include <syslog.h>

namespace tavero {
namespace {

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

} // namespace

QString Logger::messageFilePath()
{
    return QString(); // syslog keeps the text itself
}

bool Logger::RegisterSource(const QString& sourceName, const QString& /*messageFilePath*/)
{
    if (sourceName.isEmpty())
        return false;
    const QMutexLocker locker(&lock());
    const QByteArray name = sourceName.toUtf8();
    if (name != ident()) {
        closelog();
        ident() = name;
    }
    openlog(ident().constData(), LOG_PID, LOG_USER);
    return true;
}

void Logger::reportRegistration(bool /*registered*/) {}

void Logger::writeToSystemLog(const QString& message, LoggerSeverity severity)
{
    syslog(priorityOf(severity), "%s", message.toUtf8().constData());
}

} // namespace tavero
