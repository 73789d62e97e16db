// The Windows platform layer against a recorded Win32 API: what it writes into the phonebook, the
// routing table, the connection manager, the event log and the shell, and how it reads answers.
#include "platform/logger.h"
#include "platform/platformoverrides.h"
#include "platform/windows/win32api.h"
#include "platform/windows/windowsplatform.h"
#include "support/testmain.h"

#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <raserror.h>
#include <tuple>

using namespace tavero;

namespace {

// Windows 10 reports a longer entry record than the SDK's layout; the two interface metrics sit
// 32 bytes after its end.
constexpr DWORD systemEntrySize = sizeof(RASENTRYW) + 1200;

// The machine's network connections as one COM object: the connection manager, its enumerator and
// the connection fetched last. Every Release() is logged, so a leaked reference shows.
class FakeConnections : public INetConnectionManager, IEnumNetConnection, INetConnection {
public:
    QList<std::pair<QUuid, NETCON_STATUS>> items;
    QStringList log; // switches and releases

    HRESULT WINAPI QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG WINAPI AddRef() override { return 2; }
    ULONG WINAPI Release() override { return log << "release", 1; }
    HRESULT WINAPI EnumConnections(NETCONMGR_ENUM_FLAGS, IEnumNetConnection** all) override
    {
        return m_next = 0, *all = this, S_OK;
    }
    HRESULT WINAPI Next(ULONG, INetConnection** connection, ULONG* fetched) override
    {
        *fetched = m_next < items.size() ? 1 : 0;
        *connection = *fetched ? (++m_next, this) : nullptr;
        return *fetched ? S_OK : S_FALSE;
    }
    HRESULT WINAPI Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT WINAPI Reset() override { return E_NOTIMPL; }
    HRESULT WINAPI Clone(IEnumNetConnection**) override { return E_NOTIMPL; }
    HRESULT WINAPI Connect() override { return log << "connect " + id(), S_OK; }
    HRESULT WINAPI Disconnect() override { return log << "disconnect " + id(), S_OK; }
    HRESULT WINAPI Delete() override { return E_NOTIMPL; }
    HRESULT WINAPI Duplicate(LPCWSTR, INetConnection**) override { return E_NOTIMPL; }
    HRESULT WINAPI GetProperties(NETCON_PROPERTIES** properties) override
    {
        // Allocated as the system does: freed with CoTaskMemFree.
        *properties = static_cast<NETCON_PROPERTIES*>(std::calloc(1, sizeof(NETCON_PROPERTIES)));
        std::tie((*properties)->guidId, (*properties)->Status) = items[m_next - 1];
        return S_OK;
    }
    HRESULT WINAPI GetUiObjectClassId(CLSID*) override { return E_NOTIMPL; }
    HRESULT WINAPI Rename(LPCWSTR) override { return E_NOTIMPL; }

private:
    QString id() const { return items[m_next - 1].first.toString(); }
    int m_next = 0;
};

// A route row as text; the fields every half-default route shares must hold their one value.
QString prefixOf(const MIB_IPFORWARD_ROW2& row)
{
    const auto text = [](const SOCKADDR_INET& a) {
        return QHostAddress(reinterpret_cast<const sockaddr*>(&a)).toString();
    };
    const bool usual = row.InterfaceLuid.Value == 0 && row.ValidLifetime == 0xFFFFFFFF &&
                       row.PreferredLifetime == 0xFFFFFFFF && row.Metric == 0 && !row.Loopback &&
                       row.AutoconfigureAddress && !row.Publish && row.Immortal;
    return text(row.DestinationPrefix.Prefix) + '/' +
           QString::number(row.DestinationPrefix.PrefixLength) + " via " + text(row.NextHop) +
           " if " + QString::number(row.InterfaceIndex) + (usual ? "" : " (unexpected fields)");
}

// Records what the client writes and answers as scripted.
class RecordedApi : public Win32Api {
public:
    QStringList calls; // phonebook, credentials, dials, hang-ups, event log, shell
    QStringList routes;
    DWORD dialResult = 0;
    QList<DWORD> routeResults; // one per CreateIpForwardEntry2, then 0
    HRESULT managerResult = S_OK;
    FakeConnections connections;
    // GetAdaptersAddresses: adapters by friendly name with their addresses.
    std::deque<IP_ADAPTER_ADDRESSES> adapters;
    std::deque<IP_ADAPTER_UNICAST_ADDRESS> unicast;
    std::deque<SOCKADDR_INET> sockets;
    std::deque<std::wstring> names;
    std::vector<MIB_TCPROW> tcpRows;
    bool connected = true;

    void addAdapter(const QString& name, ULONG index, const QStringList& addresses)
    {
        IP_ADAPTER_ADDRESSES adapter = {};
        adapter.FriendlyName = names.emplace_back(name.toStdWString()).data();
        adapter.IfIndex = index;
        adapter.Ipv6IfIndex = index + 100;
        IP_ADAPTER_UNICAST_ADDRESS** link = &adapter.FirstUnicastAddress;
        for (const QString& text : addresses) {
            SOCKADDR_INET& socket = sockets.emplace_back();
            socket.si_family = text.contains(':') ? AF_INET6 : AF_INET;
            InetPtonW(socket.si_family, text.toStdWString().c_str(),
                      socket.si_family == AF_INET ? static_cast<void*>(&socket.Ipv4.sin_addr)
                                                  : &socket.Ipv6.sin6_addr);
            IP_ADAPTER_UNICAST_ADDRESS& entry = unicast.emplace_back();
            entry.Address = {reinterpret_cast<SOCKADDR*>(&socket), sizeof(SOCKADDR_INET)};
            *link = &entry;
            link = &entry.Next;
        }
        adapters.push_back(adapter);
        for (size_t i = 0; i + 1 < adapters.size(); ++i)
            adapters[i].Next = &adapters[i + 1];
    }

    DWORD RasGetEntryPropertiesW(LPCWSTR, LPCWSTR, LPRASENTRYW, LPDWORD size, LPBYTE,
                                 LPDWORD) override
    {
        return *size = systemEntrySize, ERROR_BUFFER_TOO_SMALL;
    }
    template <typename... Values>
    void note(const char* format, Values... values)
    {
        calls << QString::asprintf(format, values...);
    }
    DWORD RasSetEntryPropertiesW(LPCWSTR, LPCWSTR name, LPRASENTRYW e, DWORD size, LPBYTE,
                                 DWORD) override
    {
        DWORD metrics[2] = {0xFFFFFFFF, 0xFFFFFFFF};
        if (size >= sizeof(RASENTRYW) + 40)
            std::memcpy(metrics, reinterpret_cast<BYTE*>(e) + sizeof(RASENTRYW) + 32, 8);
        note("%ls size %lu options %lx/%lx vpn %lu net %lu ppp %lu redial %lu/%lu metrics "
             "%lu/%lu '%ls' '%ls' '%ls'",
             name, e->dwSize, e->dwfOptions, e->dwfOptions2, e->dwVpnStrategy, e->dwfNetProtocols,
             e->dwFramingProtocol, e->dwRedialCount, e->dwRedialPause, metrics[0], metrics[1],
             e->szLocalPhoneNumber, e->szDeviceType, e->szDeviceName);
        return 0;
    }
    DWORD RasSetCredentialsW(LPCWSTR, LPCWSTR name, LPRASCREDENTIALSW c, BOOL) override
    {
        return note("credentials %ls mask %lu key '%ls' size %lu", name, c->dwMask, c->szPassword,
                    c->dwSize),
               0;
    }
    DWORD RasDialW(LPRASDIALEXTENSIONS, LPCWSTR, LPRASDIALPARAMSW p, DWORD notifierType, LPVOID,
                   LPHRASCONN connection) override
    {
        note("dial %ls %ls/%ls notifier %lx", p->szEntryName, p->szUserName, p->szPassword,
             notifierType);
        return *connection = HRASCONN(0x42), dialResult;
    }
    DWORD RasHangUpW(HRASCONN connection) override { return note("hang up %p", connection), 0; }
    DWORD RasEnumConnectionsW(LPRASCONNW connection, LPDWORD, LPDWORD count) override
    {
        return connection->hrasconn = HRASCONN(0x77), *count = 1, 0;
    }
    DWORD RasGetConnectStatusW(HRASCONN, LPRASCONNSTATUSW status) override
    {
        return status->rasconnstate = connected ? RASCS_Connected : RASCS_Disconnected, 0;
    }
    DWORD RasDeleteEntryW(LPCWSTR, LPCWSTR name) override { return note("delete %ls", name), 0; }
    ULONG GetAdaptersAddresses(ULONG, ULONG flags, PIP_ADAPTER_ADDRESSES buffer,
                               PULONG size) override
    {
        // More than the first guess: the lookup must grow its buffer.
        if (*size < 4096 || flags != GAA_FLAG_INCLUDE_PREFIX)
            return *size = 4096, ERROR_BUFFER_OVERFLOW;
        return adapters.empty() ? ERROR_NO_DATA : (*buffer = adapters.front(), NO_ERROR);
    }
    DWORD CreateIpForwardEntry2(const MIB_IPFORWARD_ROW2* row) override
    {
        const DWORD result = routeResults.isEmpty() ? 0 : routeResults.takeFirst();
        if (result == 0)
            routes << prefixOf(*row);
        return result;
    }
    DWORD DeleteIpForwardEntry2(const MIB_IPFORWARD_ROW2* row) override
    {
        return routes.removeOne(prefixOf(*row)) ? 0 : ERROR_NOT_FOUND;
    }
    DWORD GetTcpTable(PMIB_TCPTABLE table, PDWORD size, BOOL) override
    {
        const DWORD needed = DWORD(sizeof(DWORD) + sizeof(MIB_TCPROW) * tcpRows.size());
        if (*size < needed)
            return *size = needed, ERROR_INSUFFICIENT_BUFFER;
        table->dwNumEntries = DWORD(tcpRows.size());
        return std::copy(tcpRows.begin(), tcpRows.end(), table->table), NO_ERROR;
    }
    HRESULT createConnectionManager(INetConnectionManager** manager) override
    {
        return *manager = SUCCEEDED(managerResult) ? &connections : nullptr, managerResult;
    }
    void CoTaskMemFree(LPVOID memory) override { std::free(memory); }
    HANDLE RegisterEventSourceW(LPCWSTR, LPCWSTR source) override
    {
        return note("event source %ls", source), reinterpret_cast<HANDLE>(0x55);
    }
    BOOL ReportEventW(HANDLE, WORD type, WORD category, DWORD id, PSID user, WORD count, DWORD,
                      LPCWSTR* strings, LPVOID) override
    {
        return note("event type %d category %d id %lx user %s '%ls' of %d", type, category, id,
                    user ? "set" : "none", strings[0], count),
               TRUE;
    }
    BOOL DeregisterEventSource(HANDLE) override { return calls << "event source closed", TRUE; }
    BOOL ShellExecuteExW(SHELLEXECUTEINFOW* info) override
    {
        return note("shell %ls '%ls' show %d mask %lu params %s", info->lpVerb,
                    std::wcsrchr(info->lpFile, L'\\') + 1, info->nShow, info->fMask,
                    info->lpParameters ? "some" : "none"),
               FALSE; // declined
    }
    int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) override
    {
        return note("box %s '%ls' '%ls' style %x", owner ? "owned" : "free", caption, text, type),
               IDOK;
    }
};

} // namespace

class TestWindowsPlatform : public QObject {
    Q_OBJECT

    std::unique_ptr<RecordedApi> api;

private slots:
    void init()
    {
        api = std::make_unique<RecordedApi>();
        Win32Api::setCurrent(api.get());
    }
    void cleanup()
    {
        Win32Api::setCurrent(nullptr);
        PlatformOverrides::setAdministrator(std::nullopt);
    }

    // Each connect: its phonebook entries, credentials, dial and IKEv2 routes, and what a failure
    // undoes. "protocol" may name the L2TP key ("L2TP psk") or "without rights" (for IKEv2).
    void connect_data()
    {
        QTest::addColumn<QString>("protocol");
        QTest::addColumn<QStringList>("calls");
        QTest::addColumn<QStringList>("routes");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<QList<DWORD>>("routeResults");
        QTest::addColumn<QStringList>("addresses"); // of the "TAVERO IKEv2" adapter
        QTest::addColumn<DWORD>("dialResult");
        const QStringList both{"10.8.0.2", "2001:db8::2", "fe80::5", "fe80::6"};
        const auto row = [&](const char* name, const char* protocol, const QStringList& calls,
                             const QStringList& routes = {}, const char* failure = "",
                             const QList<DWORD>& routeResults = {},
                             const QStringList& addresses = {}, DWORD dialResult = 0) {
            QTest::newRow(name) << protocol << calls << routes << failure << routeResults
                                << (addresses.isEmpty() ? both : addresses) << dialResult;
        };
        // Written in the size the system reports; PPTP and L2TP then rewrite it in the SDK's size.
        const QString created = "TAVERO %1 size " + QString::number(systemEntrySize) +
                                " options %2 vpn %3 net %4 ppp 0 redial 1/60 metrics %5 "
                                "'vpn.example' 'vpn' '%6'";
        const QString second = "TAVERO %1 size 5616 options 27090010/%2 vpn %3 net 12 ppp 1 "
                               "redial 3/60 metrics 4294967295/4294967295 'vpn.example' 'Vpn' "
                               "'WAN Miniport (%1)'";
        const QString key = "credentials TAVERO L2TP mask 16 key '%1' size 1068";
        const QString dial = "dial TAVERO %1 bob/secret notifier %2";
        const QStringList dialled{
            created.arg("IKEv2", "7020100/20b2104", "7", "12", "3/3", "WAN Miniport (IKEv2)"),
            dial.arg("IKEv2", "0")};
        const QStringList all{"0.0.0.0/1 via 10.8.0.2 if 9", "128.0.0.0/1 via 10.8.0.2 if 9",
                              "::/1 via fe80::5 if 109", "8000::/1 via fe80::5 if 109"};
        const char* broken = "warning.cannot_open_ikev2_connection";
        const QStringList undone = dialled + QStringList{"delete TAVERO IKEv2"};
        row("pptp", "PPTP",
            {created.arg("PPTP", "410/0", "1", "4", "0/0", ""), second.arg("PPTP", "2000127", "1"),
             dial.arg("PPTP", "ffffffff")});
        row("l2tp", "L2TP psk",
            {created.arg("L2TP", "410/10", "3", "4", "0/0", ""), key.arg("psk"),
             second.arg("L2TP", "2000137", "3"), key.arg("psk"), dial.arg("L2TP", "ffffffff")});
        row("l2tp without key", "L2TP",
            {created.arg("L2TP", "410/10", "3", "4", "0/0", ""), key.arg(""),
             second.arg("L2TP", "2000127", "3"), dial.arg("L2TP", "ffffffff")});
        row("ikev2: all four routes", "IKEv2", dialled, all);
        // Without rights the system's own default gateway carries the traffic: no routes.
        row("ikev2 without rights", "IKEv2 without rights",
            {created.arg("IKEv2", "7020110/2002104", "7", "12", "0/0", "WAN Miniport (IKEv2)"),
             dial.arg("IKEv2", "0")});
        row("ikev2 refused: line hung up, entry deleted", "IKEv2",
            dialled + QStringList{"hang up 0x42", "delete TAVERO IKEv2"}, {}, broken, {}, {}, 691);
        row("ikev2, second IPv4 route exists: first undone", "IKEv2", undone, {}, broken,
            {0, 5010});
        row("ikev2, second IPv6 route refused: IPv6 pair undone", "IKEv2", dialled, all.mid(0, 2),
            "", {0, 0, 0, 5});
        row("ikev2, no IPv4 address", "IKEv2", undone, {}, broken, {}, {"fe80::5"});
    }
    void connect()
    {
        QFETCH(QString, protocol);
        QFETCH(QStringList, addresses);
        api->addAdapter("Ethernet", 3, {"192.168.1.5"});
        api->addAdapter("TAVERO IKEv2", 9, addresses);
        QFETCH(DWORD, dialResult);
        QFETCH(QList<DWORD>, routeResults);
        api->dialResult = dialResult;
        api->routeResults = routeResults;
        const bool administrator = !protocol.contains("without rights");
        PlatformOverrides::setAdministrator(administrator);
        WindowsPlatform platform;
        const OperationResult result =
            protocol == "PPTP" ? platform.connectPptp("vpn.example", "bob", "secret")
            : protocol.startsWith("L2TP")
                ? platform.connectL2tp("vpn.example", "bob", "secret", protocol.section(' ', 1))
                : platform.connectIKEv2("vpn.example", "bob", "secret", !administrator);
        QTEST(result.isSuccess ? QString() : result.message, "failure");
        QTEST(api->calls.filter(QRegularExpression("^(TAVERO|credentials|dial|hang|delete)")),
              "calls");
        QTEST(api->routes, "routes");
    }

    void disconnectHangsUpOnlyAConnectedLineAndDeletesEveryEntry()
    {
        for (const bool connected : {true, false}) {
            api->calls.clear();
            api->connected = connected;
            QVERIFY(WindowsPlatform().disconnect().isSuccess);
            QCOMPARE(api->calls.join(", "), QString(connected ? "hang up 0x77, " : "") +
                                                "delete TAVERO PPTP, delete TAVERO L2TP, "
                                                "delete TAVERO IKEv2");
        }
    }

    void killSwitch()
    {
        const QUuid wired = QUuid::createUuid(), wifi = QUuid::createUuid();
        api->connections.items = {{wired, NCS_CONNECTED},
                                  {QUuid::createUuid(), NCS_DISCONNECTED},
                                  {wifi, NCS_MEDIA_DISCONNECTED}};
        WindowsPlatform platform;
        QVERIFY(platform.turnOffInternet().isSuccess);
        QCOMPARE(platform.rememberedConnections(), (QList<QUuid>{wired, wifi}));
        QCOMPARE(api->connections.log.filter("connect"),
                 (QStringList{"disconnect " + wired.toString(), "disconnect " + wifi.toString()}));

        // Nothing left to switch off: a failure, and the list stays.
        for (auto& item : api->connections.items)
            item.second = NCS_DISCONNECTED;
        QCOMPARE(platform.turnOffInternet().message, "warning.failed_to_turn_off_the_internet");
        QCOMPARE(platform.rememberedConnections().size(), 2);

        // The user switched the wired line on already: only Wi-Fi comes back, both are forgotten.
        api->connections.items[0].second = NCS_CONNECTED;
        api->connections.log.clear();
        bool reenabled = false;
        QVERIFY(platform.turnOnInternet(reenabled).isSuccess);
        QVERIFY(reenabled);
        QCOMPARE(api->connections.log.filter("connect"), QStringList{"connect " + wifi.toString()});
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        // Every fetched connection, the enumerator and the manager are released.
        QCOMPARE(api->connections.log.count("release"), 5);

        // No connection manager fails the pass with its own message; "retry" as usual.
        api->managerResult = HRESULT(0x80040154); // class not registered
        QVERIFY(platform.turnOffInternet().message.contains("connection_manager_library"));
        api->managerResult = HRESULT(0x800704D5);
        QCOMPARE(platform.turnOffInternet().message, "warning.failed_to_turn_off_the_internet");
    }

    void rdpListener()
    {
        // The table holds ports in network order; only a listening 3389 counts.
        for (const auto& [state, port, listening] :
             {std::tuple{MIB_TCP_STATE_LISTEN, 3389, true}, {MIB_TCP_STATE_ESTAB, 3389, false}}) {
            api->tcpRows = {{{MIB_TCP_STATE_TIME_WAIT}, 0, htons(443), 0, 0},
                            {{DWORD(state)}, htonl(0x7F000001), htons(u_short(port)), 0, 0}};
            QCOMPARE(WindowsPlatform::IsRdpListening(), listening);
        }
    }

    // The event log, the elevation request and the start-up warning box.
    void systemIntegration()
    {
        // The message handler registers before every message; each entry opens and closes the
        // source.
        Logger logger;
        const char* const texts[] = {"warning", "information", "error"}; // severities 0, 1, 2
        for (int severity = 0; severity < 3; ++severity) {
            logger.RegisterSource();
            logger.WriteLog(texts[severity], LoggerSeverity(severity));
        }
        QCOMPARE(api->calls,
                 (QStringList{"event source TAVERO",
                              "event type 2 category 0 id c0000101 user set 'warning' of 1",
                              "event source closed", "event source TAVERO",
                              "event type 4 category 0 id c0000100 user set 'information' of 1",
                              "event source closed", "event source TAVERO",
                              "event type 1 category 0 id c0000102 user set 'error' of 1",
                              "event source closed"}));

        api->calls.clear();
        qunsetenv("TAVERO_NO_ELEVATE");
        QVERIFY(!WindowsPlatform::elevateToAdmin()); // declined
        WindowsPlatform::showWarningBox("TAVERO", "no rights");
        QCOMPARE(api->calls, (QStringList{"shell runas 'tst_windowsplatform.exe' show 1 mask 0 "
                                          "params none",
                                          "box free 'TAVERO' 'no rights' style 30"}));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestWindowsPlatform)
#include "tst_windowsplatform.moc"
