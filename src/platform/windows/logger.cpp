#include "platform/logger.h"

#include "platform/windows/win32api.h"

#include <QCoreApplication>
#include <QRecursiveMutex>
#include <QSettings>
#include <QTextStream>
#include <cstdio>

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

const QString sourceName = QStringLiteral("TAVERO");

const char* trueOrFalse(bool value)
{
    return value ? "true" : "false";
}

void print(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

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

void Logger::RegisterSource()
{
    const QMutexLocker locker(&logLock());
    QString messageFile =
        QCoreApplication::applicationDirPath() + QStringLiteral("/taveroeventsource.dll");
    messageFile.replace(QLatin1Char('/'), QLatin1Char('\\'));
    const bool registered = RegisterSource(sourceName, messageFile);
    print(QStringLiteral("Source Registered: ") + QLatin1String(trueOrFalse(registered)));
}

bool Logger::RegisterSource(const QString& name, const QString& messageFilePath)
{
    if (name.isEmpty())
        return false;
    const QMutexLocker locker(&logLock());
    const QString keyPath =
        QStringLiteral("HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\services\\"
                       "eventlog\\Application\\") +
        name;
    print(QStringLiteral("Registry Path: ") + keyPath);
    QSettings key(keyPath, QSettings::NativeFormat);
    print(QStringLiteral("Registry is writible: ") + QLatin1String(trueOrFalse(key.isWritable())));
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

void Logger::WriteLog(const QString& message, LoggerSeverity severity)
{
    if (message.isEmpty())
        return;
    const QMutexLocker locker(&logLock());
    if (qEnvironmentVariableIntValue("TAVERO_LOG_STDERR") == 1)
        std::fprintf(stderr, "TAVERO: %s\n", message.toUtf8().constData());
    if (sink()) {
        sink()(severity, message);
        return;
    }
    if (sourceName.size() > 254) {
        print(QStringLiteral("ERROR: Incorrect event source app name size"));
        return;
    }
    Win32Api& api = Win32Api::current();
    const std::wstring source = sourceName.toStdWString();
    const HANDLE eventLog = api.RegisterEventSourceW(nullptr, source.c_str());
    print(QStringLiteral("Get event source succeed: ") + QLatin1String(trueOrFalse(eventLog)));
    if (!eventLog)
        return;
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
    print(QStringLiteral("Deregister event source succeed: ") + QLatin1String(trueOrFalse(closed)));
}

void Logger::setSink(Sink newSink)
{
    const QMutexLocker locker(&logLock());
    sink() = std::move(newSink);
}

} // namespace tavero
