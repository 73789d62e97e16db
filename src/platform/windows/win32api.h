#pragma once

// The Win32 headers below need the Windows 10 layouts; the build sets WINVER and _WIN32_WINNT.
// Their order matters (Winsock before windows.h, the IP helper last), so they are kept apart.
// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
#include <windows.h>
#include <iphlpapi.h>
#include <netioapi.h>
#include <netcon.h>
#include <ras.h>
#include <shellapi.h>
// clang-format on

namespace tavero {

// Every Win32 call the Windows platform layer makes, behind one object. Each member forwards to the
// system function of the same name unchanged; tests derive from it, record what the client writes
// (entry fields, credential masks, route rows, COM calls) and answer as scripted. The process uses
// current(), which is the real API unless a test installed its own.
class Win32Api {
public:
    virtual ~Win32Api() = default;

    static Win32Api& current();
    // Installs `api` (not owned) as current(); nullptr restores the real API.
    static void setCurrent(Win32Api* api);

    // Remote Access Service.
    virtual DWORD RasGetEntryPropertiesW(LPCWSTR phonebook, LPCWSTR entry, LPRASENTRYW entryData,
                                         LPDWORD entrySize, LPBYTE deviceInfo,
                                         LPDWORD deviceInfoSize);
    virtual DWORD RasSetEntryPropertiesW(LPCWSTR phonebook, LPCWSTR entry, LPRASENTRYW entryData,
                                         DWORD entrySize, LPBYTE deviceInfo, DWORD deviceInfoSize);
    virtual DWORD RasSetCredentialsW(LPCWSTR phonebook, LPCWSTR entry,
                                     LPRASCREDENTIALSW credentials, BOOL clearCredentials);
    virtual DWORD RasDialW(LPRASDIALEXTENSIONS extensions, LPCWSTR phonebook,
                           LPRASDIALPARAMSW parameters, DWORD notifierType, LPVOID notifier,
                           LPHRASCONN connection);
    virtual DWORD RasHangUpW(HRASCONN connection);
    virtual DWORD RasEnumConnectionsW(LPRASCONNW connections, LPDWORD size, LPDWORD count);
    virtual DWORD RasGetConnectStatusW(HRASCONN connection, LPRASCONNSTATUSW status);
    virtual DWORD RasDeleteEntryW(LPCWSTR phonebook, LPCWSTR entry);

    // IP Helper.
    virtual ULONG GetAdaptersAddresses(ULONG family, ULONG flags, PIP_ADAPTER_ADDRESSES addresses,
                                       PULONG size);
    virtual DWORD CreateIpForwardEntry2(const MIB_IPFORWARD_ROW2* row);
    virtual DWORD DeleteIpForwardEntry2(const MIB_IPFORWARD_ROW2* row);
    virtual DWORD GetTcpTable(PMIB_TCPTABLE table, PDWORD size, BOOL order);

    // COM: the network connection manager (CoCreateInstance) and the task allocator.
    virtual HRESULT createConnectionManager(INetConnectionManager** manager);
    virtual void CoTaskMemFree(LPVOID memory);

    // Security, event log, shell and user interface.
    virtual BOOL CheckTokenMembership(HANDLE token, PSID sid, PBOOL isMember);
    virtual HANDLE RegisterEventSourceW(LPCWSTR server, LPCWSTR source);
    virtual BOOL ReportEventW(HANDLE eventLog, WORD type, WORD category, DWORD eventId, PSID user,
                              WORD stringCount, DWORD dataSize, LPCWSTR* strings, LPVOID data);
    virtual BOOL DeregisterEventSource(HANDLE eventLog);
    virtual BOOL ShellExecuteExW(SHELLEXECUTEINFOW* info);
    virtual int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
};

} // namespace tavero
