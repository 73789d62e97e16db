// The event-log half of tavero::Logger; the portable half is platform/logger.cpp.
#include "platform/logger.h"

#include "platform/windows/win32api.h"

#include <QCoreApplication>
#include <QDir>
#include <QRecursiveMutex>
#include <QSettings>

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
    QSettings key(QStringLiteral("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\services\\"
                                 "eventlog\\Application\\") +
                      name,
                  QSettings::NativeFormat);
    // Only an administrator may write there; others log with the text alone.
    if (!key.isWritable())
        return false;
    key.setValue(QStringLiteral("EventMessageFile"), messageFilePath);
    key.setValue(QStringLiteral("TypesSupported"), 7u);
    key.sync();
    return key.status() == QSettings::NoError;
}

void Logger::writeToSystemLog(const QString& message, LoggerSeverity severity)
{
    Win32Api& api = Win32Api::current();
    // Opened once and kept for the process: the system closes it at exit.
    static HANDLE eventLog = nullptr;
    if (!eventLog)
        eventLog = api.RegisterEventSourceW(nullptr, L"TAVERO");
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
}

} // namespace tavero
