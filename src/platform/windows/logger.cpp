// The event-log half of tavero::Logger; the portable half is platform/logger.cpp.
#include "platform/logger.h"

#include "platform/windows/win32api.h"

#include <QCoreApplication>
#include <QDir>
#include <QRecursiveMutex>
#include <QSettings>
#include <cstdio>

namespace tavero {
namespace {

// The event type and identifier of each severity; the message file "taveroeventsource.dll" prints
// the insertion string for all three identifiers.
void eventOf(LoggerSeverity severity, WORD& type, DWORD& identifier)
{
    switch (severity) {
    case LoggerSeverity::Warning:
        type = EVENTLOG_WARNING_TYPE;
        identifier = 0xC0000101;
        return;
    case LoggerSeverity::Information:
        type = EVENTLOG_INFORMATION_TYPE;
        identifier = 0xC0000100;
        return;
    case LoggerSeverity::Error:
        break;
    }
    type = EVENTLOG_ERROR_TYPE;
    identifier = 0xC0000102;
}

const char* trueOrFalse(bool value)
{
    return value ? "true" : "false";
}

// A copy of the current user's security identifier from the process heap (the caller frees it
// with HeapFree), or null.
PSID GetUserSid()
{
    HANDLE token = nullptr;
    if (!OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token)) {
        if (GetLastError() != ERROR_NO_TOKEN ||
            !OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
            return nullptr;
    }
    PSID copy = nullptr;
    DWORD size = 0;
    if (!GetTokenInformation(token, TokenUser, nullptr, 0, &size) &&
        GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        auto* user = static_cast<TOKEN_USER*>(HeapAlloc(GetProcessHeap(), 0, size));
        if (user && GetTokenInformation(token, TokenUser, user, size, &size)) {
            const DWORD length = GetLengthSid(user->User.Sid);
            copy = HeapAlloc(GetProcessHeap(), 0, length);
            if (copy && !CopySid(length, copy, user->User.Sid)) {
                HeapFree(GetProcessHeap(), 0, copy);
                copy = nullptr;
            }
        }
        if (user)
            HeapFree(GetProcessHeap(), 0, user);
    }
    CloseHandle(token);
    return copy;
}

} // namespace

QString Logger::messageFilePath()
{
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath() +
                                    QStringLiteral("/taveroeventsource.dll"));
}

bool Logger::RegisterSource(const QString& name, const QString& messageFilePath)
{
    if (name.isEmpty())
        return false;
    const QMutexLocker locker(&lock());
    const QString keyPath =
        QStringLiteral("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\services\\"
                       "eventlog\\Application\\") +
        name;
    std::fprintf(stepStream(), "Registry Path: %s\n", qUtf8Printable(keyPath));
    QSettings key(keyPath, QSettings::NativeFormat);
    // Only an administrator may write there; others log with the text alone.
    std::fprintf(stepStream(), "Registry is writible: %s\n", trueOrFalse(key.isWritable()));
    if (!key.isWritable())
        return false;
    key.setValue(QStringLiteral("EventMessageFile"), messageFilePath);
    key.sync();
    if (key.status() != QSettings::NoError)
        return false;
    key.setValue(QStringLiteral("TypesSupported"), 7u);
    key.sync();
    return key.status() == QSettings::NoError;
}

void Logger::reportRegistration(bool registered)
{
    std::fprintf(stepStream(), "Source Registered: %s\n", trueOrFalse(registered));
    std::fflush(stepStream());
}

void Logger::writeToSystemLog(const QString& message, LoggerSeverity severity)
{
    const QString sourceName = QStringLiteral("TAVERO");
    if (sourceName.size() > 254) {
        std::fprintf(stepStream(), "ERROR: Incorrect event source app name size\n");
        return;
    }
    Win32Api& api = Win32Api::current();
    const HANDLE eventLog = api.RegisterEventSourceW(nullptr, sourceName.toStdWString().c_str());
    std::fprintf(stepStream(), "Get event source succeed: %s\n", trueOrFalse(eventLog));
    if (!eventLog)
        return; // nowhere to write; TAVERO_LOG_STDERR=1 still shows the entry
    WORD type = 0;
    DWORD identifier = 0;
    eventOf(severity, type, identifier);
    const PSID user = GetUserSid();
    const std::wstring text = message.toStdWString();
    LPCWSTR strings[] = {text.c_str()};
    api.ReportEventW(eventLog, type, 0, identifier, user, 1, 0, strings, nullptr);
    if (user)
        HeapFree(GetProcessHeap(), 0, user);
    const bool closed = api.DeregisterEventSource(eventLog) != FALSE;
    std::fprintf(stepStream(), "Deregister event source succeed: %s\n", trueOrFalse(closed));
    std::fflush(stepStream());
}

} // namespace tavero
