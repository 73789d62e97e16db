#include "app/messagehandler.h"

#include "platform/logger.h"

namespace tavero {

void messageHandler(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    LoggerSeverity severity;
    switch (type) {
    case QtInfoMsg:
        severity = LoggerSeverity::Information;
        break;
    case QtWarningMsg:
        severity = LoggerSeverity::Warning;
        break;
    case QtCriticalMsg:
        severity = LoggerSeverity::Error;
        break;
    case QtDebugMsg:
    case QtFatalMsg:
    default:
        return;
    }
    // A fresh writer per message keeps the handler stateless; the writer serialises itself.
    Logger logger;
    logger.RegisterSource();
    logger.WriteLog(message, severity);
}

} // namespace tavero
