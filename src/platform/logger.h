#pragma once

#include "platform/loggerseverity.h"

#include <QString>
#include <cstdio>
#include <functional>

class QRecursiveMutex;

namespace tavero {

// Writes diagnostics to the system log under the source "TAVERO" (syslog on Linux, the event log
// on Windows). Cheap to create; every instance shares one process-wide recursive lock, so any
// thread may write. The portable half (lock, sink, stderr mirror) lives in platform/logger.cpp;
// each system's half in its own folder.
class Logger {
public:
    using Sink = std::function<void(LoggerSeverity severity, const QString& message)>;

    // Registers the source "TAVERO" with the system log; the Windows half reports the outcome as
    // "Source Registered: true|false" on the step stream.
    void RegisterSource();
    // Registers a named source; false for an empty name or when the system refuses.
    bool RegisterSource(const QString& sourceName, const QString& messageFilePath);
    // Writes one entry; an empty message is ignored.
    void WriteLog(const QString& message, LoggerSeverity severity);

    // Replaces the system log by a sink (tests read what was written); an empty sink restores it.
    static void setSink(Sink sink);
    // Where the Windows half prints its registration and writing steps: standard output by
    // default; tavero-cli passes standard error because its standard output carries data.
    static void setStepStream(std::FILE* stream);

private:
    static QRecursiveMutex& lock();
    static std::FILE*& stepStream();
    // The system half's report of a registration (nothing on Linux).
    static void reportRegistration(bool registered);
    // Where the system finds the texts of the source's events; empty where it needs none.
    static QString messageFilePath();
    // Hands one entry to the system log; called under lock().
    static void writeToSystemLog(const QString& message, LoggerSeverity severity);
};

} // namespace tavero
