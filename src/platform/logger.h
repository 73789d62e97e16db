#pragma once

#include "platform/loggerseverity.h"

#include <QString>
#include <functional>

namespace tavero {

// Writes diagnostics to the system log under the source "TAVERO" (syslog on Linux, the event log
// on Windows). Cheap to create; every instance shares one process-wide recursive lock, so any
// thread may write.
class Logger {
public:
    using Sink = std::function<void(LoggerSeverity severity, const QString& message)>;

    // Registers the source "TAVERO" with the system log.
    void RegisterSource();
    // Registers a named source; false for an empty name or when the system refuses.
    bool RegisterSource(const QString& sourceName, const QString& messageFilePath);
    // Writes one entry; an empty message is ignored.
    void WriteLog(const QString& message, LoggerSeverity severity);

    // Replaces the system log by a sink (tests read what was written); an empty sink restores it.
    static void setSink(Sink sink);
};

} // namespace tavero
