#include "platform/windows/windowsplatform.h"

#include "platform/platformoverrides.h"
#include "platform/windows/cominitializer.h"
#include "platform/windows/win32api.h"

#include <QCoreApplication>
#include <QDebug>
#include <QRegularExpression>
#include <QSettings>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace tavero {
namespace {

// Here rather than in its own file: a static library's member is linked only when referenced, and
// every program that has a platform links this file.
const ComInitializer comInitializer;

const wchar_t pptpEntry[] = L"TAVERO PPTP";
const wchar_t l2tpEntry[] = L"TAVERO L2TP";
const wchar_t ikev2Entry[] = L"TAVERO IKEv2";

// Bounds of the copied strings, terminator included.
constexpr int phoneNumberBound = 129;
constexpr int deviceNameBound = 129;
constexpr int deviceTypeBound = 17;
constexpr int nameBound = 257;

// The entry record ends with dwRedialPause in the SDK's layout; newer systems report a longer
// record for the empty entry name, whose first additions are two IPv6 DNS addresses and the two
// interface metrics the IKEv2 entry sets.
struct RasEntryTail {
    IN6_ADDR ipv6addrDns;
    IN6_ADDR ipv6addrDnsAlt;
    DWORD dwIPv4InterfaceMetric;
    DWORD dwIPv6InterfaceMetric;
};
constexpr DWORD ipv4MetricOffset =
    sizeof(RASENTRYW) + offsetof(RasEntryTail, dwIPv4InterfaceMetric);
constexpr DWORD ipv6MetricOffset =
    sizeof(RASENTRYW) + offsetof(RasEntryTail, dwIPv6InterfaceMetric);

// Entry option bits written by the two property sets.
constexpr DWORD createOptionsDialUp = 0x410;     // remote default gateway, encrypted password
constexpr DWORD createOptionsIkev2 = 0x07020100; // modem lights, EAP, preview, progress
constexpr DWORD remoteDefaultGateway = 0x10;
constexpr DWORD createOptions2Ikev2 = 0x02002104; // cache credentials, IPv6 gateway, reconnect
constexpr DWORD explicitMetricsNoClassRoute = 0xB0000;
constexpr DWORD usePreSharedKey = 0x10;
constexpr DWORD connectOptions = 0x27090010;
constexpr DWORD connectOptions2 = 0x02000127;
constexpr DWORD preSharedKeyMask = 0x10;
constexpr DWORD rasConnected = 0x2000;

void copyText(WCHAR* target, int bound, const QString& text)
{
    const int length = qMin(text.size(), bound - 1);
    std::memcpy(target, text.utf16(), sizeof(WCHAR) * static_cast<size_t>(length));
    target[length] = 0;
}

std::wstring wide(const QString& text)
{
    return text.toStdWString();
}

DWORD strategyOf(WindowsPlatform::vpn_type type)
{
    switch (type) {
    case WindowsPlatform::VpnPptp:
        return VS_PptpOnly;
    case WindowsPlatform::VpnL2tp:
        return VS_L2tpOnly;
    case WindowsPlatform::VpnIkev2:
        break;
    }
    return 7; // IKEv2 only
}

const wchar_t* miniportOf(WindowsPlatform::vpn_type type)
{
    switch (type) {
    case WindowsPlatform::VpnPptp:
        return L"WAN Miniport (PPTP)";
    case WindowsPlatform::VpnL2tp:
        return L"WAN Miniport (L2TP)";
    case WindowsPlatform::VpnIkev2:
        break;
    }
    return L"WAN Miniport (IKEv2)";
}

void setDword(std::vector<BYTE>& record, DWORD offset, DWORD value)
{
    if (offset + sizeof(DWORD) <= record.size())
        std::memcpy(record.data() + offset, &value, sizeof value);
}

// Stores `key` as the entry's pre-shared key; the result of RasSetCredentialsW.
DWORD savePreSharedKey(const wchar_t* entryName, const QString& key)
{
    RASCREDENTIALSW credentials = {};
    credentials.dwSize = sizeof credentials;
    credentials.dwMask = preSharedKeyMask;
    copyText(credentials.szPassword, nameBound, key);
    const DWORD result =
        Win32Api::current().RasSetCredentialsW(nullptr, entryName, &credentials, FALSE);
    SecureZeroMemory(credentials.szPassword, sizeof credentials.szPassword);
    return result;
}

QHostAddress socketAddressToHostAddress(const SOCKET_ADDRESS& address)
{
    if (!address.lpSockaddr || address.iSockaddrLength <= 0) {
        qDebug() << "SOCKET_ADDRESS incorrect, len:" << address.iSockaddrLength;
        return QHostAddress();
    }
    return QHostAddress(address.lpSockaddr);
}

QString sockAddrToString(const SOCKET_ADDRESS& address)
{
    const QHostAddress host = socketAddressToHostAddress(address);
    return host.isNull() ? QString() : host.toString();
}

MIB_IPFORWARD_ROW2 createIpForwardRow(const SOCKADDR_INET& destination,
                                      const SOCKADDR_INET& nextHop, UINT8 prefixLength,
                                      NET_IFINDEX interfaceIndex)
{
    MIB_IPFORWARD_ROW2 row = {};
    row.InterfaceLuid.Value = 0;
    row.InterfaceIndex = interfaceIndex;
    row.DestinationPrefix.Prefix = destination;
    row.DestinationPrefix.PrefixLength = prefixLength;
    row.NextHop = nextHop;
    row.SitePrefixLength = 0;
    row.ValidLifetime = 0xFFFFFFFF;
    row.PreferredLifetime = 0xFFFFFFFF;
    row.Metric = 0;
    row.Loopback = FALSE;
    row.AutoconfigureAddress = TRUE;
    row.Publish = FALSE;
    row.Immortal = TRUE;
    return row;
}

SOCKADDR_INET ipv4Address(quint32 hostOrder)
{
    SOCKADDR_INET address = {};
    address.Ipv4.sin_family = AF_INET;
    address.Ipv4.sin_addr.s_addr = htonl(hostOrder);
    return address;
}

// Parses an IPv6 text into a socket address; false when it is no IPv6 address.
bool ipv6Address(const QString& text, SOCKADDR_INET& address)
{
    const QHostAddress host(text);
    if (host.protocol() != QAbstractSocket::IPv6Protocol)
        return false;
    address = {};
    address.Ipv6.sin6_family = AF_INET6;
    const Q_IPV6ADDR bytes = host.toIPv6Address();
    std::memcpy(&address.Ipv6.sin6_addr, bytes.c, sizeof bytes.c);
    return true;
}

const char* tcpStateName(DWORD state)
{
    static const char* const names[] = {"CLOSED",      "LISTEN",     "SYN-SENT",   "SYN-RECEIVED",
                                        "ESTABLISHED", "FIN-WAIT-1", "FIN-WAIT-2", "CLOSE-WAIT",
                                        "CLOSING",     "LAST-ACK",   "TIME-WAIT",  "DELETE-TCB"};
    return state >= 1 && state <= 12 ? names[state - 1] : "UNKNOWN dwState value";
}

struct FreeDeleter {
    void operator()(void* block) const { std::free(block); }
};

} // namespace

bool WindowsPlatform::haveDisabledNetDevicesByKillSwitch()
{
    return !m_remembered.isEmpty();
}

// ---- Dial-up entries -------------------------------------------------------------------------

OperationResult WindowsPlatform::forceConnectPptp(const QString& host, const QString& user,
                                                  const QString& password)
{
    const QString entry = QString::fromWCharArray(pptpEntry);
    createvpn(entry, host, user, password, QString(), VpnPptp, true);
    if (connectVpn(host, entry, user, password, QString(), VpnPptp))
        return OperationResult();
    return OperationResult(QCoreApplication::translate(
        "QObject", QT_TRANSLATE_NOOP("QObject", "warning.cannot_open_pptp_connection")));
}

OperationResult WindowsPlatform::forceConnectL2tp(const QString& host, const QString& user,
                                                  const QString& password,
                                                  const QString& preSharedKey)
{
    const QString entry = QString::fromWCharArray(l2tpEntry);
    createvpn(entry, host, user, password, preSharedKey, VpnL2tp, true);
    if (connectVpn(host, entry, user, password, preSharedKey, VpnL2tp))
        return OperationResult();
    return OperationResult(QCoreApplication::translate(
        "QObject", QT_TRANSLATE_NOOP("QObject", "warning.cannot_open_l2tp_connection")));
}

OperationResult WindowsPlatform::forceConnectIKEv2(const QString& host, const QString& user,
                                                   const QString& password, bool withoutAdminRights)
{
    const QString entry = QString::fromWCharArray(ikev2Entry);
    createvpn(entry, host, user, password, QString(), VpnIkev2, withoutAdminRights);
    bool ok = dialUp(entry, user, password, 0);
    if (ok) {
        const AdapterInfo adapter = getAdapterInfo(entry);
        const bool found = adapter.interfaceIndex != 0;
        ok = withoutAdminRights || found;
        if (!found) {
            qWarning() << "IKEv2 adapter not found";
        } else {
            qDebug() << "New IKEv2 Connection Adapter: Interface Index" << adapter.interfaceIndex
                     << "IPv6 Interface Index" << adapter.ipv6InterfaceIndex;
            qDebug() << "IP addresses:";
            for (const QHostAddress& address : adapter.addresses)
                qDebug() << address.toString();
            if (!withoutAdminRights) {
                ok = AddIpv4RoutesToAdapter(adapter);
                if (!ok)
                    qCritical() << "IPv4 Routes haven't added";
            }
            // The IPv6 pair is a bonus: without it the connect still stands.
            if (ok && !AddIpv6RoutesToAdapter(adapter))
                qWarning() << "IPv6 Routes haven't added";
        }
    }
    if (!ok) {
        Win32Api::current().RasDeleteEntryW(nullptr, ikev2Entry);
        return OperationResult(QCoreApplication::translate(
            "QObject", QT_TRANSLATE_NOOP("QObject", "warning.cannot_open_ikev2_connection")));
    }
    return OperationResult();
}

void WindowsPlatform::createvpn(const QString& entryName, const QString& host,
                                const QString& /*user*/, const QString& /*password*/,
                                const QString& preSharedKey, vpn_type type, bool withoutAdminRights)
{
    Win32Api& api = Win32Api::current();
    // The system says how large an entry record it expects.
    DWORD size = 0;
    api.RasGetEntryPropertiesW(nullptr, L"", nullptr, &size, nullptr, nullptr);
    if (size < sizeof(RASENTRYW))
        size = sizeof(RASENTRYW);
    std::vector<BYTE> record(size, 0);
    auto* entry = reinterpret_cast<RASENTRYW*>(record.data());
    entry->dwSize = size;
    copyText(entry->szLocalPhoneNumber, phoneNumberBound, host);
    copyText(entry->szDeviceType, deviceTypeBound, QStringLiteral("vpn"));
    if (type == VpnIkev2)
        copyText(entry->szDeviceName, deviceNameBound, QStringLiteral("WAN Miniport (IKEv2)"));
    entry->dwType = RASET_Vpn;
    entry->dwVpnStrategy = strategyOf(type);
    entry->dwEncryptionType = ET_Optional;
    entry->dwRedialCount = 1;
    entry->dwRedialPause = 60;
    if (type == VpnIkev2) {
        entry->dwfNetProtocols = 0xC;
        entry->dwfOptions = createOptionsIkev2 | (withoutAdminRights ? remoteDefaultGateway : 0);
        entry->dwfOptions2 =
            createOptions2Ikev2 | (withoutAdminRights ? 0 : explicitMetricsNoClassRoute);
        const DWORD metric = withoutAdminRights ? 0 : 3;
        setDword(record, ipv4MetricOffset, metric);
        setDword(record, ipv6MetricOffset, metric);
    } else {
        entry->dwfNetProtocols = RASNP_Ip;
        entry->dwfOptions = createOptionsDialUp;
        entry->dwfOptions2 = type == VpnL2tp ? usePreSharedKey : 0;
    }
    const std::wstring name = wide(entryName);
    const DWORD result = api.RasSetEntryPropertiesW(nullptr, name.c_str(), entry, size, nullptr, 0);
    if (result != 0)
        qCritical() << "RasSetEntryProperties failure. Code:" << result;
    else
        qDebug() << "RasSetEntryProperties success.";
    if (type == VpnL2tp)
        savePreSharedKey(name.c_str(), preSharedKey);
}

bool WindowsPlatform::connectVpn(const QString& host, const QString& entryName, const QString& user,
                                 const QString& password, const QString& preSharedKey,
                                 vpn_type type)
{
    Win32Api& api = Win32Api::current();
    const std::wstring name = wide(entryName);
    try {
        RASENTRYW entry = {};
        entry.dwSize = sizeof entry;
        entry.dwfOptions = connectOptions;
        entry.dwfOptions2 = connectOptions2 | (preSharedKey.isEmpty() ? 0 : usePreSharedKey);
        entry.dwCountryID = 0;
        entry.dwCountryCode = 0;
        copyText(entry.szLocalPhoneNumber, phoneNumberBound, host);
        entry.dwfNetProtocols = 0xC;
        entry.dwFramingProtocol = RASFP_Ppp;
        copyText(entry.szDeviceType, deviceTypeBound, QStringLiteral("Vpn"));
        copyText(entry.szDeviceName, deviceNameBound, QString::fromWCharArray(miniportOf(type)));
        entry.dwDialMode = 0;
        entry.dwDialExtraPercent = 75;
        entry.dwDialExtraSampleSeconds = 120;
        entry.dwHangUpExtraPercent = 10;
        entry.dwHangUpExtraSampleSeconds = 120;
        entry.dwType = RASET_Vpn;
        entry.dwEncryptionType = ET_Optional;
        entry.dwVpnStrategy = strategyOf(type);
        entry.dwRedialCount = 3;
        entry.dwRedialPause = 60;
        if (api.RasSetEntryPropertiesW(nullptr, name.c_str(), &entry, sizeof entry, nullptr, 0) !=
            0)
            return false;
        if (!preSharedKey.isEmpty() && savePreSharedKey(name.c_str(), preSharedKey) > 0)
            return false;

        // disconnect() finds the connection again by enumeration.
        return dialUp(entryName, user, password, 0xFFFFFFFF);
    } catch (...) {
        api.RasDeleteEntryW(nullptr, name.c_str());
        return false;
    }
}

bool WindowsPlatform::dialUp(const QString& entryName, const QString& user, const QString& password,
                             DWORD notifierType)
{
    Win32Api& api = Win32Api::current();
    RASDIALPARAMSW parameters = {};
    parameters.dwSize = sizeof parameters;
    copyText(parameters.szEntryName, nameBound, entryName);
    copyText(parameters.szUserName, nameBound, user);
    copyText(parameters.szPassword, nameBound, password);
    HRASCONN connection = nullptr;
    const DWORD result =
        api.RasDialW(nullptr, nullptr, &parameters, notifierType, nullptr, &connection);
    SecureZeroMemory(parameters.szPassword, sizeof parameters.szPassword);
    if (result == 0)
        return true;
    qCritical() << "RasDial failure. Code:" << result;
    if (connection)
        api.RasHangUpW(connection);
    return false;
}

OperationResult WindowsPlatform::forceDisconnect()
{
    qDebug() << "WindowsPlatform::forceDisconnect";
    Win32Api& api = Win32Api::current();
    // Room for exactly one connection: more than one active leaves the call failing, and then
    // nothing is hung up.
    RASCONNW connection = {};
    connection.dwSize = sizeof connection;
    DWORD size = sizeof connection;
    DWORD count = 0;
    if (api.RasEnumConnectionsW(&connection, &size, &count) == 0 && count > 0) {
        RASCONNSTATUSW status = {};
        status.dwSize = sizeof status;
        if (api.RasGetConnectStatusW(connection.hrasconn, &status) == 0 &&
            status.rasconnstate == rasConnected)
            api.RasHangUpW(connection.hrasconn);
    }
    for (const wchar_t* entry : {pptpEntry, l2tpEntry, ikev2Entry})
        api.RasDeleteEntryW(nullptr, entry);
    return OperationResult();
}

// ---- Routes and adapters ---------------------------------------------------------------------

AdapterInfo WindowsPlatform::getAdapterInfo(const QString& friendlyName)
{
    AdapterInfo info;
    Win32Api& api = Win32Api::current();
    ULONG size = 376; // one adapter record
    std::unique_ptr<void, FreeDeleter> buffer(std::malloc(size));
    if (!buffer) {
        qDebug() << "ERROR MALLOC PIP_ADAPTER_ADDRESSES, size:" << size;
        return info;
    }
    qDebug() << "PIP_ADAPTER_ADDRESSES buffer size:" << size;
    const ULONG flags = 0x10; // include prefixes
    ULONG result = api.GetAdaptersAddresses(
        AF_UNSPEC, flags, static_cast<PIP_ADAPTER_ADDRESSES>(buffer.get()), &size);
    for (int attempt = 0;
         attempt < 4 && (result == ERROR_BUFFER_OVERFLOW || result == ERROR_NOT_ENOUGH_MEMORY);
         ++attempt) {
        qDebug() << "PIP_ADAPTER_ADDRESSES size buffer error:"
                 << (result == ERROR_BUFFER_OVERFLOW ? "ERROR_BUFFER_OVERFLOW"
                                                     : "ERROR_NOT_ENOUGH_MEMORY");
        qDebug() << "Size should be:" << size << "Reallocating...";
        buffer.reset(std::malloc(size));
        if (!buffer) {
            qDebug() << "ERROR MALLOC PIP_ADAPTER_ADDRESSES, size:" << size;
            return info;
        }
        result = api.GetAdaptersAddresses(AF_UNSPEC, flags,
                                          static_cast<PIP_ADAPTER_ADDRESSES>(buffer.get()), &size);
    }
    if (result != NO_ERROR) {
        qDebug() << "GetAdaptersAddresses ERROR";
        return info;
    }
    for (auto* adapter = static_cast<PIP_ADAPTER_ADDRESSES>(buffer.get()); adapter;
         adapter = adapter->Next) {
        qDebug() << "Interface: " << adapter->AdapterName << "Index:" << adapter->IfIndex;
        QList<QHostAddress> addresses;
        for (auto* unicast = adapter->FirstUnicastAddress; unicast; unicast = unicast->Next) {
            const QHostAddress address = socketAddressToHostAddress(unicast->Address);
            qDebug() << "Unicast IP:" << sockAddrToString(unicast->Address);
            if (!address.isNull())
                addresses << address;
        }
        const QString name =
            adapter->FriendlyName ? QString::fromWCharArray(adapter->FriendlyName) : QString();
        qDebug() << "IPv6 Index:" << adapter->Ipv6IfIndex;
        qDebug() << "Friendly Name:" << name;
        qDebug() << "IPv4 Metric" << adapter->Ipv4Metric;
        qDebug() << "IPv6 Metric" << adapter->Ipv6Metric;
        if (name == friendlyName) {
            info.interfaceIndex = adapter->IfIndex;
            info.ipv6InterfaceIndex = adapter->Ipv6IfIndex;
            info.addresses = addresses;
            break;
        }
    }
    return info;
}

bool WindowsPlatform::AddRoute(const MIB_IPFORWARD_ROW2& row)
{
    const DWORD result = Win32Api::current().CreateIpForwardEntry2(&row);
    if (result == NO_ERROR)
        return true;
    // The routing table's usual refusals by name, so a support log reads without a code list.
    static const std::pair<DWORD, const char*> known[] = {
        {ERROR_ACCESS_DENIED, "ACCESS_DENIED"},
        {ERROR_NOT_SUPPORTED, "NOT_SUPPORTED"},
        {ERROR_INVALID_PARAMETER, "INVALID_PARAMETER"},
        {ERROR_NOT_FOUND, "NOT_FOUND"},
        {ERROR_OBJECT_ALREADY_EXISTS, "OBJECT_ALREADY_EXISTS"}};
    const char* name = "";
    for (const auto& [code, text] : known) {
        if (code == result)
            name = text;
    }
    qDebug() << "ERROR Creating route! Code: " << result << name;
    return false;
}

bool WindowsPlatform::DeleteRoute(const MIB_IPFORWARD_ROW2& row)
{
    const DWORD result = Win32Api::current().DeleteIpForwardEntry2(&row);
    if (result == NO_ERROR)
        qDebug() << "Route deleted.";
    else
        qDebug().noquote() << QStringLiteral("ERROR Deleting Route! Code: %1").arg(result);
    return result == NO_ERROR;
}

bool WindowsPlatform::AddIpv4RoutesToAdapter(const AdapterInfo& adapter)
{
    qDebug() << "Adding routes IPv4...";
    if (!isRunningAsAdministrator()) {
        qCritical() << "Can't add routes. Should be running as admin";
        return false;
    }
    QHostAddress address;
    for (const QHostAddress& candidate : adapter.addresses) {
        if (candidate.protocol() == QAbstractSocket::IPv4Protocol) {
            address = candidate;
            break;
        }
    }
    if (address.isNull()) {
        qCritical() << "ERROR: Adapter IPv4 Address not found! Route hasn't added";
        return false;
    }
    qDebug() << "IPv4 Address" << address.toString();
    const SOCKADDR_INET nextHop = ipv4Address(address.toIPv4Address());
    const MIB_IPFORWARD_ROW2 lower =
        createIpForwardRow(ipv4Address(0), nextHop, 1, adapter.interfaceIndex);
    if (!AddRoute(lower)) {
        qCritical() << "ERROR Creating route 0.0.0.0 128.0.0.0" << address.toString();
        return false;
    }
    const MIB_IPFORWARD_ROW2 upper =
        createIpForwardRow(ipv4Address(0x80000000u), nextHop, 1, adapter.interfaceIndex);
    if (!AddRoute(upper)) {
        qCritical() << "ERROR Creating route 128.0.0.0 128.0.0.0" << address.toString();
        qDebug() << "Deleting route 0.0.0.0 128.0.0.0...";
        DeleteRoute(lower);
        return false;
    }
    return true;
}

bool WindowsPlatform::AddIpv6RoutesToAdapter(const AdapterInfo& adapter)
{
    qDebug() << "Adding routes IPv6...";
    if (!isRunningAsAdministrator()) {
        qCritical() << "Can't add routes. Should be running as admin";
        return false;
    }
    static const QRegularExpression linkLocal(QStringLiteral("^fe80:"));
    QString address;
    for (const QHostAddress& candidate : adapter.addresses) {
        if (candidate.protocol() == QAbstractSocket::IPv6Protocol &&
            linkLocal.match(candidate.toString()).hasMatch()) {
            address = candidate.toString();
            break;
        }
    }
    if (address.isEmpty()) {
        qCritical() << "ERROR: Adapter IPv6 Address not found! Route hasn't added";
        return false;
    }
    qDebug() << "IPv6 Address" << address;
    SOCKADDR_INET nextHop;
    if (!ipv6Address(address, nextHop)) {
        qCritical() << "IPv6 Address converting error. IPv6 address:" << address;
        return false;
    }
    SOCKADDR_INET destination;
    if (!ipv6Address(QStringLiteral("::"), destination)) {
        qCritical() << "IPv6 Address converting error. IPv6 address: ::";
        return false;
    }
    const MIB_IPFORWARD_ROW2 lower =
        createIpForwardRow(destination, nextHop, 1, adapter.ipv6InterfaceIndex);
    if (!AddRoute(lower)) {
        qCritical() << "ERROR Creating route ::/1" << address;
        return false;
    }
    if (!ipv6Address(QStringLiteral("8000::"), destination)) {
        qCritical() << "IPv6 Address converting error. IPv6 address: 8000::";
        DeleteRoute(lower);
        return false;
    }
    const MIB_IPFORWARD_ROW2 upper =
        createIpForwardRow(destination, nextHop, 1, adapter.ipv6InterfaceIndex);
    if (!AddRoute(upper)) {
        qCritical() << "ERROR Creating route 8000::/1" << address;
        DeleteRoute(lower);
        return false;
    }
    return true;
}

// ---- Network switch-off ----------------------------------------------------------------------

OperationResult WindowsPlatform::forceTurnOffInternet()
{
    bool reenabled = false;
    return enableOrDisableConnections(false, reenabled);
}

OperationResult WindowsPlatform::forceTurnOnInternet(bool& reenabled)
{
    return enableOrDisableConnections(true, reenabled);
}

bool WindowsPlatform::guidInContainerAndEraseIfExists(const QUuid& guid, QList<QUuid> list)
{
    return list.removeOne(guid);
}

OperationResult WindowsPlatform::enableOrDisableConnections(bool enable, bool& reenabled)
{
    reenabled = false;
    Win32Api& api = Win32Api::current();
    HRESULT status = E_FAIL;
    INetConnectionManager* manager = nullptr;
    const HRESULT created = api.createConnectionManager(&manager);
    const HRESULT retry = static_cast<HRESULT>(0x800704D5);
    if (FAILED(created) && created != retry) {
        return OperationResult(
            QCoreApplication::translate(
                "QObject",
                QT_TRANSLATE_NOOP("QObject",
                                  "warning.could_not_connect_to_the_connection_manager_library"))
                .arg(static_cast<qint32>(created)));
    }
    IEnumNetConnection* connections = nullptr;
    if (SUCCEEDED(created) && manager) {
        manager->EnumConnections(NCME_DEFAULT, &connections);
        status = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
        const bool hadRemembered = !m_remembered.isEmpty();
        HRESULT fetched = S_OK;
        while (connections) {
            INetConnection* connection = nullptr;
            ULONG count = 0;
            fetched = connections->Next(1, &connection, &count);
            if (fetched != S_OK || count == 0 || !connection)
                break;
            NETCON_PROPERTIES* properties = nullptr;
            if (SUCCEEDED(connection->GetProperties(&properties)) && properties) {
                const QUuid guid(properties->guidId);
                if (enable) {
                    if (guidInContainerAndEraseIfExists(guid, m_remembered) &&
                        properties->Status == NCS_DISCONNECTED) {
                        status = connection->Connect();
                        reenabled = true;
                    }
                } else if (properties->Status != NCS_DISCONNECTED) {
                    m_remembered.append(guid);
                    status = connection->Disconnect();
                }
                api.CoTaskMemFree(properties->pszwName);
                api.CoTaskMemFree(properties->pszwDeviceName);
                api.CoTaskMemFree(properties);
            }
            connection->Release();
        }
        if (enable && hadRemembered)
            m_remembered.clear();
        if (FAILED(fetched))
            status = fetched;
    }
    if (connections)
        connections->Release();
    if (manager)
        manager->Release();
    if (FAILED(status)) {
        return OperationResult(QCoreApplication::translate(
            "QObject",
            enable ? QT_TRANSLATE_NOOP("QObject", "warning.failed_to_turn_on_the_internet")
                   : QT_TRANSLATE_NOOP("QObject", "warning.failed_to_turn_off_the_internet")));
    }
    return OperationResult();
}

// ---- System integration ----------------------------------------------------------------------

QString WindowsPlatform::runKeyPath()
{
    return QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run");
}

bool WindowsPlatform::isRunOnStart()
{
    return QSettings(runKeyPath(), QSettings::NativeFormat).contains(QStringLiteral("TAVERO"));
}

void WindowsPlatform::setRunOnStart(bool run)
{
    QSettings runList(runKeyPath(), QSettings::NativeFormat);
    if (run) {
        QString program = QCoreApplication::applicationFilePath();
        runList.setValue(QStringLiteral("TAVERO"),
                         program.replace(QLatin1Char('/'), QLatin1Char('\\')));
    } else {
        runList.remove(QStringLiteral("TAVERO"));
    }
}

bool WindowsPlatform::IsRdpListening()
{
    if (const std::optional<bool> forced = PlatformOverrides::rdpListening())
        return *forced;
    Win32Api& api = Win32Api::current();
    DWORD size = sizeof(MIB_TCPTABLE);
    std::unique_ptr<void, FreeDeleter> buffer(std::malloc(size));
    if (!buffer) {
        qDebug() << "Error allocating memory for PMIB_TCPTABLE";
        return false;
    }
    DWORD result = api.GetTcpTable(static_cast<PMIB_TCPTABLE>(buffer.get()), &size, TRUE);
    if (result == ERROR_INSUFFICIENT_BUFFER) {
        buffer.reset(std::malloc(size));
        if (!buffer) {
            qDebug() << "Error allocating memory for PMIB_TCPTABLE";
            return false;
        }
        result = api.GetTcpTable(static_cast<PMIB_TCPTABLE>(buffer.get()), &size, TRUE);
    }
    if (result != NO_ERROR) {
        qDebug().noquote() << QStringLiteral("GetTcpTable failed with %1").arg(result);
        return false;
    }
    const auto* table = static_cast<const MIB_TCPTABLE*>(buffer.get());
    qDebug().noquote() << QStringLiteral("Number of entries: %1").arg(table->dwNumEntries);
    for (DWORD i = 0; i < table->dwNumEntries; ++i) {
        const MIB_TCPROW& row = table->table[i];
        const quint16 localPort = ntohs(static_cast<u_short>(row.dwLocalPort));
        const quint16 remotePort = ntohs(static_cast<u_short>(row.dwRemotePort));
        QString text = QStringLiteral("TCP[%1] State: %2 - ").arg(i).arg(row.dwState) +
                       QLatin1String(tcpStateName(row.dwState)) + QLatin1Char('\n');
        text += QStringLiteral("TCP[%1] Local Addr: %2\n")
                    .arg(i)
                    .arg(QHostAddress(ntohl(row.dwLocalAddr)).toString());
        text += QStringLiteral("TCP[%1] Local Port: %2\n").arg(i).arg(localPort);
        text += QStringLiteral("TCP[%1] Remote Addr: %2\n")
                    .arg(i)
                    .arg(QHostAddress(ntohl(row.dwRemoteAddr)).toString());
        text += QStringLiteral("TCP[%1] Remote Port: %2").arg(i).arg(remotePort);
        qDebug().noquote() << text;
        if (row.dwState == MIB_TCP_STATE_LISTEN && localPort == 3389) {
            qDebug() << "Found local RDP server";
            return true;
        }
    }
    qDebug() << "Local RDP server not found";
    return false;
}

// ---- Administrator rights and elevation ------------------------------------------------------

bool WindowsPlatform::isRunningAsAdministrator()
{
    if (const std::optional<bool> forced = PlatformOverrides::administrator())
        return *forced;
    SID_IDENTIFIER_AUTHORITY ntAuthority = SECURITY_NT_AUTHORITY;
    PSID administrators = nullptr;
    if (!AllocateAndInitializeSid(&ntAuthority, 2, SECURITY_BUILTIN_DOMAIN_RID,
                                  DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0, 0, 0, &administrators))
        return false;
    BOOL member = FALSE;
    if (!Win32Api::current().CheckTokenMembership(nullptr, administrators, &member))
        member = FALSE;
    FreeSid(administrators);
    return member != FALSE;
}

bool WindowsPlatform::elevateToAdmin()
{
    if (qEnvironmentVariableIntValue("TAVERO_NO_ELEVATE") == 1)
        return false;
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return false;
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof info;
    info.fMask = 0;
    info.hwnd = nullptr;
    info.lpVerb = L"runas";
    info.lpFile = path;
    info.lpParameters = nullptr;
    info.nShow = SW_NORMAL;
    return Win32Api::current().ShellExecuteExW(&info) != FALSE;
}

void WindowsPlatform::showWarningBox(const QString& caption, const QString& text)
{
    const std::wstring wideCaption = wide(caption);
    const std::wstring wideText = wide(text);
    Win32Api::current().MessageBoxW(nullptr, wideText.c_str(), wideCaption.c_str(),
                                    MB_OK | MB_ICONWARNING);
}

} // namespace tavero
