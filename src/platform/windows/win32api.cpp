#include "platform/windows/win32api.h"

#include <atomic>

namespace tavero {
namespace {

std::atomic<Win32Api*> installed{nullptr};

// The network connection manager and its interface, as the system registers them.
const CLSID connectionManagerClass = {
    0xBA126AD1, 0x2166, 0x11D1, {0xB1, 0xD0, 0x00, 0x80, 0x5F, 0xC1, 0x27, 0x0E}};
const IID connectionManagerInterface = {
    0xC08956A2, 0x1CD3, 0x11D1, {0xB1, 0xC5, 0x00, 0x80, 0x5F, 0xC1, 0x27, 0x0E}};

} // namespace

Win32Api& Win32Api::current()
{
    static Win32Api real;
    Win32Api* api = installed.load();
    return api ? *api : real;
}

void Win32Api::setCurrent(Win32Api* api)
{
    installed.store(api);
}

DWORD Win32Api::RasGetEntryPropertiesW(LPCWSTR phonebook, LPCWSTR entry, LPRASENTRYW entryData,
                                       LPDWORD entrySize, LPBYTE deviceInfo, LPDWORD deviceInfoSize)
{
    return ::RasGetEntryPropertiesW(phonebook, entry, entryData, entrySize, deviceInfo,
                                    deviceInfoSize);
}

DWORD Win32Api::RasSetEntryPropertiesW(LPCWSTR phonebook, LPCWSTR entry, LPRASENTRYW entryData,
                                       DWORD entrySize, LPBYTE deviceInfo, DWORD deviceInfoSize)
{
    return ::RasSetEntryPropertiesW(phonebook, entry, entryData, entrySize, deviceInfo,
                                    deviceInfoSize);
}

DWORD Win32Api::RasSetCredentialsW(LPCWSTR phonebook, LPCWSTR entry, LPRASCREDENTIALSW credentials,
                                   BOOL clearCredentials)
{
    return ::RasSetCredentialsW(phonebook, entry, credentials, clearCredentials);
}

DWORD Win32Api::RasDialW(LPRASDIALEXTENSIONS extensions, LPCWSTR phonebook,
                         LPRASDIALPARAMSW parameters, DWORD notifierType, LPVOID notifier,
                         LPHRASCONN connection)
{
    return ::RasDialW(extensions, phonebook, parameters, notifierType, notifier, connection);
}

DWORD Win32Api::RasHangUpW(HRASCONN connection)
{
    return ::RasHangUpW(connection);
}

DWORD Win32Api::RasEnumConnectionsW(LPRASCONNW connections, LPDWORD size, LPDWORD count)
{
    return ::RasEnumConnectionsW(connections, size, count);
}

DWORD Win32Api::RasGetConnectStatusW(HRASCONN connection, LPRASCONNSTATUSW status)
{
    return ::RasGetConnectStatusW(connection, status);
}

DWORD Win32Api::RasDeleteEntryW(LPCWSTR phonebook, LPCWSTR entry)
{
    return ::RasDeleteEntryW(phonebook, entry);
}

ULONG Win32Api::GetAdaptersAddresses(ULONG family, ULONG flags, PIP_ADAPTER_ADDRESSES addresses,
                                     PULONG size)
{
    return ::GetAdaptersAddresses(family, flags, nullptr, addresses, size);
}

DWORD Win32Api::CreateIpForwardEntry2(const MIB_IPFORWARD_ROW2* row)
{
    return ::CreateIpForwardEntry2(row);
}

DWORD Win32Api::DeleteIpForwardEntry2(const MIB_IPFORWARD_ROW2* row)
{
    return ::DeleteIpForwardEntry2(row);
}

DWORD Win32Api::GetTcpTable(PMIB_TCPTABLE table, PDWORD size, BOOL order)
{
    return ::GetTcpTable(table, size, order);
}

HRESULT Win32Api::createConnectionManager(INetConnectionManager** manager)
{
    // Out-of-process server, never downloaded code.
    return ::CoCreateInstance(connectionManagerClass, nullptr,
                              CLSCTX_LOCAL_SERVER | CLSCTX_NO_CODE_DOWNLOAD,
                              connectionManagerInterface, reinterpret_cast<void**>(manager));
}

void Win32Api::CoTaskMemFree(LPVOID memory)
{
    ::CoTaskMemFree(memory);
}

BOOL Win32Api::CheckTokenMembership(HANDLE token, PSID sid, PBOOL isMember)
{
    return ::CheckTokenMembership(token, sid, isMember);
}

HANDLE Win32Api::RegisterEventSourceW(LPCWSTR server, LPCWSTR source)
{
    return ::RegisterEventSourceW(server, source);
}

BOOL Win32Api::ReportEventW(HANDLE eventLog, WORD type, WORD category, DWORD eventId, PSID user,
                            WORD stringCount, DWORD dataSize, LPCWSTR* strings, LPVOID data)
{
    return ::ReportEventW(eventLog, type, category, eventId, user, stringCount, dataSize, strings,
                          data);
}

BOOL Win32Api::DeregisterEventSource(HANDLE eventLog)
{
    return ::DeregisterEventSource(eventLog);
}

BOOL Win32Api::ShellExecuteExW(SHELLEXECUTEINFOW* info)
{
    return ::ShellExecuteExW(info);
}

int Win32Api::MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    return ::MessageBoxW(owner, text, caption, type);
}

} // namespace tavero
