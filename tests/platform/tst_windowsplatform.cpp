// The Windows platform layer against a recorded Win32 API: what it writes into the phonebook, the
// routing table, the connection manager, the event log and the shell, and how it reads the
// system's answers.
#include "platform/logger.h"
#include "platform/platformoverrides.h"
#include "platform/windows/win32api.h"
#include "platform/windows/windowsplatform.h"
#include "support/maptranslator.h"
#include "support/messagecapture.h"
#include "support/testmain.h"

#include <cstring>
#include <deque>
#include <memory>
#include <raserror.h>

using namespace tavero;

namespace {

// Windows 10 reports a longer entry record than the SDK's layout; the two interface metrics sit
// 32 bytes after its end.
constexpr DWORD systemEntrySize = sizeof(RASENTRYW) + 1200;

class FakeNetConnection : public INetConnection {
public:
    FakeNetConnection(QStringList& log, const QUuid& id, NETCON_STATUS status)
        : m_log(log)
        , m_id(id)
        , m_status(status)
    {}
    HRESULT WINAPI QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG WINAPI AddRef() override { return 2; }
    ULONG WINAPI Release() override { return m_log << "release", 1; }
    HRESULT WINAPI Connect() override { return m_log << "connect " + m_id.toString(), S_OK; }
    HRESULT WINAPI Disconnect() override { return m_log << "disconnect " + m_id.toString(), S_OK; }
    HRESULT WINAPI Delete() override { return E_NOTIMPL; }
    HRESULT WINAPI Duplicate(LPCWSTR, INetConnection**) override { return E_NOTIMPL; }
    HRESULT WINAPI GetProperties(NETCON_PROPERTIES** properties) override
    {
        auto* record = static_cast<NETCON_PROPERTIES*>(std::calloc(1, sizeof(NETCON_PROPERTIES)));
        record->guidId = m_id;
        record->Status = m_status;
        *properties = record;
        return S_OK;
    }
    HRESULT WINAPI GetUiObjectClassId(CLSID*) override { return E_NOTIMPL; }
    HRESULT WINAPI Rename(LPCWSTR) override { return E_NOTIMPL; }

    QStringList& m_log;
    QUuid m_id;
    NETCON_STATUS m_status;
};

class FakeConnections : public IEnumNetConnection, public INetConnectionManager {
public:
    explicit FakeConnections(QStringList& log)
        : m_log(log)
    {}
    HRESULT WINAPI QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG WINAPI AddRef() override { return 2; }
    ULONG WINAPI Release() override { return m_log << "release", 1; }
    HRESULT WINAPI EnumConnections(NETCONMGR_ENUM_FLAGS, IEnumNetConnection** connections) override
    {
        m_next = 0;
        *connections = this;
        return S_OK;
    }
    HRESULT WINAPI Next(ULONG, INetConnection** connection, ULONG* fetched) override
    {
        *fetched = m_next < m_items.size() ? 1 : 0;
        *connection = *fetched ? m_items[m_next++].get() : nullptr;
        return *fetched ? S_OK : S_FALSE;
    }
    HRESULT WINAPI Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT WINAPI Reset() override { return E_NOTIMPL; }
    HRESULT WINAPI Clone(IEnumNetConnection**) override { return E_NOTIMPL; }

    QStringList& m_log;
    std::vector<std::unique_ptr<FakeNetConnection>> m_items;
    size_t m_next = 0;
};

QString prefixOf(const MIB_IPFORWARD_ROW2& row)
{
    const auto text = [](const SOCKADDR_INET& a) {
        return QHostAddress(reinterpret_cast<const sockaddr*>(&a)).toString();
    };
    const bool usual = row.InterfaceLuid.Value == 0 && row.ValidLifetime == 0xFFFFFFFF &&
                       row.PreferredLifetime == 0xFFFFFFFF && row.Metric == 0 && !row.Loopback &&
                       row.AutoconfigureAddress && !row.Publish && row.Immortal;
    return QStringLiteral("%1/%2 via %3 if %4%5")
        .arg(text(row.DestinationPrefix.Prefix))
        .arg(row.DestinationPrefix.PrefixLength)
        .arg(text(row.NextHop))
        .arg(row.InterfaceIndex)
        .arg(usual ? "" : " (unexpected fields)");
}

// Records what the client writes and answers as scripted.
class RecordedApi : public Win32Api {
public:
    QStringList calls; // credentials, dials, hang-ups, deletions, routes, COM, event log, shell
    QStringList routes;
    DWORD dialResult = 0;
    QList<DWORD> routeResults; // one per CreateIpForwardEntry2, then 0
    HRESULT managerResult = S_OK;
    FakeConnections connections{calls};
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
        names.push_back(name.toStdWString());
        adapter.FriendlyName = names.back().data();
        adapter.AdapterName = const_cast<char*>("{adapter}");
        adapter.IfIndex = index;
        adapter.Ipv6IfIndex = index + 100;
        IP_ADAPTER_UNICAST_ADDRESS* previous = nullptr;
        for (const QString& text : addresses) {
            SOCKADDR_INET socket = {};
            const std::wstring wideText = text.toStdWString();
            socket.si_family = text.contains(':') ? AF_INET6 : AF_INET;
            InetPtonW(socket.si_family, wideText.c_str(),
                      socket.si_family == AF_INET ? static_cast<void*>(&socket.Ipv4.sin_addr)
                                                  : &socket.Ipv6.sin6_addr);
            sockets.push_back(socket);
            IP_ADAPTER_UNICAST_ADDRESS entry = {};
            entry.Address.lpSockaddr = reinterpret_cast<SOCKADDR*>(&sockets.back());
            entry.Address.iSockaddrLength = sizeof(SOCKADDR_INET);
            unicast.push_back(entry);
            (previous ? previous->Next : adapter.FirstUnicastAddress) = &unicast.back();
            previous = &unicast.back();
        }
        adapters.push_back(adapter);
        for (size_t i = 0; i + 1 < adapters.size(); ++i)
            adapters[i].Next = &adapters[i + 1];
    }

    DWORD RasGetEntryPropertiesW(LPCWSTR, LPCWSTR, LPRASENTRYW, LPDWORD size, LPBYTE,
                                 LPDWORD) override
    {
        *size = systemEntrySize;
        return ERROR_BUFFER_TOO_SMALL;
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
        *connection = reinterpret_cast<HRASCONN>(0x42);
        return dialResult;
    }
    DWORD RasHangUpW(HRASCONN connection) override
    {
        return calls << QStringLiteral("hang up %1").arg(quintptr(connection)), 0;
    }
    DWORD RasEnumConnectionsW(LPRASCONNW connection, LPDWORD size, LPDWORD count) override
    {
        calls << QStringLiteral("enumerate room %1").arg(*size / sizeof(RASCONNW));
        connection->hrasconn = reinterpret_cast<HRASCONN>(0x77);
        *count = 1;
        return 0;
    }
    DWORD RasGetConnectStatusW(HRASCONN, LPRASCONNSTATUSW status) override
    {
        status->rasconnstate = connected ? RASCS_Connected : RASCS_Disconnected;
        return 0;
    }
    DWORD RasDeleteEntryW(LPCWSTR, LPCWSTR name) override
    {
        return calls << "delete " + QString::fromWCharArray(name), 0;
    }
    ULONG GetAdaptersAddresses(ULONG, ULONG flags, PIP_ADAPTER_ADDRESSES buffer,
                               PULONG size) override
    {
        const ULONG needed = 4096; // more than the first guess: the lookup must grow its buffer
        calls << QStringLiteral("adapters flags %1 room %2").arg(flags).arg(*size);
        if (*size < needed) {
            *size = needed;
            return ERROR_BUFFER_OVERFLOW;
        }
        if (adapters.empty())
            return ERROR_NO_DATA;
        *buffer = adapters.front();
        return NO_ERROR;
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
        if (*size < needed) {
            *size = needed;
            return ERROR_INSUFFICIENT_BUFFER;
        }
        table->dwNumEntries = DWORD(tcpRows.size());
        std::copy(tcpRows.begin(), tcpRows.end(), table->table);
        return NO_ERROR;
    }
    HRESULT createConnectionManager(INetConnectionManager** manager) override
    {
        *manager = SUCCEEDED(managerResult) ? &connections : nullptr;
        return managerResult;
    }
    void CoTaskMemFree(LPVOID memory) override { std::free(memory); }
    BOOL CheckTokenMembership(HANDLE, PSID, PBOOL member) override { return *member = TRUE; }
    HANDLE RegisterEventSourceW(LPCWSTR, LPCWSTR source) override
    {
        calls << "event source " + QString::fromWCharArray(source);
        return reinterpret_cast<HANDLE>(0x55);
    }
    BOOL ReportEventW(HANDLE, WORD type, WORD category, DWORD id, PSID user, WORD count, DWORD,
                      LPCWSTR* strings, LPVOID) override
    {
        note("event type %d category %d id %lx user %s '%ls' of %d", type, category, id,
             user ? "set" : "none", strings[0], count);
        return TRUE;
    }
    BOOL DeregisterEventSource(HANDLE) override { return calls << "event source closed", TRUE; }
    BOOL ShellExecuteExW(SHELLEXECUTEINFOW* info) override
    {
        note("shell %ls '%ls' show %d mask %lu params %s", info->lpVerb,
             std::wcsrchr(info->lpFile, L'\\') + 1, info->nShow, info->fMask,
             info->lpParameters ? "some" : "none");
        return FALSE; // declined
    }
    int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type) override
    {
        note("box %s '%ls' '%ls' style %x", owner ? "owned" : "free", caption, text, type);
        return IDOK;
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
        PlatformOverrides::setAdministrator(true);
    }
    void cleanup()
    {
        Win32Api::setCurrent(nullptr);
        PlatformOverrides::setAdministrator(std::nullopt);
        PlatformOverrides::setRdpListening(std::nullopt);
    }

    void dialUpEntries_data()
    {
        QTest::addColumn<QString>("protocol");
        QTest::addColumn<bool>("withoutAdminRights");
        QTest::addColumn<QString>("key");
        QTest::addColumn<DWORD>("dialResult");
        QTest::addColumn<QString>("failure");
        QTest::addColumn<QStringList>("calls");
        // The first write in the size the system reports, then for PPTP and L2TP the second one,
        // which replaces it as a whole, in the SDK's 5616-byte record.
        const QString created = "TAVERO %1 size " + QString::number(systemEntrySize) +
                                " options %2 vpn %3 net %4 ppp 0 redial 1/60 metrics %5 "
                                "'vpn.example' 'vpn' '%6'";
        const QString second = "TAVERO %1 size 5616 options 27090010/%2 vpn %3 net 12 ppp 1 "
                               "redial 3/60 metrics 4294967295/4294967295 'vpn.example' 'Vpn' "
                               "'WAN Miniport (%1)'";
        const QString key = "credentials TAVERO L2TP mask 16 key '%1' size 1068";
        const QString dial = "dial TAVERO %1 bob/secret notifier %2";
        QTest::newRow("pptp") << "PPTP" << true << "" << DWORD(0) << ""
                              << QStringList{created.arg("PPTP", "410/0", "1", "4", "0/0", ""),
                                             second.arg("PPTP", "2000127", "1"),
                                             dial.arg("PPTP", "ffffffff")};
        QTest::newRow("l2tp") << "L2TP" << true << "psk" << DWORD(0) << ""
                              << QStringList{created.arg("L2TP", "410/10", "3", "4", "0/0", ""),
                                             key.arg("psk"), second.arg("L2TP", "2000137", "3"),
                                             key.arg("psk"), dial.arg("L2TP", "ffffffff")};
        QTest::newRow("l2tp without key")
            << "L2TP" << true << "" << DWORD(0) << ""
            << QStringList{created.arg("L2TP", "410/10", "3", "4", "0/0", ""), key.arg(""),
                           second.arg("L2TP", "2000127", "3"), dial.arg("L2TP", "ffffffff")};
        QTest::newRow("ikev2 as administrator")
            << "IKEv2" << false << "" << DWORD(0) << ""
            << QStringList{created.arg("IKEv2", "7020100/20b2104", "7", "12", "3/3",
                                       "WAN Miniport (IKEv2)"),
                           dial.arg("IKEv2", "0")};
        QTest::newRow("ikev2 without rights")
            << "IKEv2" << true << "" << DWORD(0) << ""
            << QStringList{created.arg("IKEv2", "7020110/2002104", "7", "12", "0/0",
                                       "WAN Miniport (IKEv2)"),
                           dial.arg("IKEv2", "0")};
        // A refused dial hangs its handle up; only IKEv2 deletes its entry at once.
        QTest::newRow("pptp refused")
            << "PPTP" << true << "" << DWORD(691) << "warning.cannot_open_pptp_connection"
            << QStringList{created.arg("PPTP", "410/0", "1", "4", "0/0", ""),
                           second.arg("PPTP", "2000127", "1"), dial.arg("PPTP", "ffffffff"),
                           "hang up 66"};
        QTest::newRow("ikev2 refused")
            << "IKEv2" << false << "" << DWORD(691) << "warning.cannot_open_ikev2_connection"
            << QStringList{created.arg("IKEv2", "7020100/20b2104", "7", "12", "3/3",
                                       "WAN Miniport (IKEv2)"),
                           dial.arg("IKEv2", "0"), "hang up 66", "delete TAVERO IKEv2"};
    }
    void dialUpEntries()
    {
        QFETCH(QString, protocol);
        QFETCH(bool, withoutAdminRights);
        QFETCH(QString, key);
        QFETCH(DWORD, dialResult);
        QFETCH(QString, failure);
        QFETCH(QStringList, calls);
        api->addAdapter("TAVERO IKEv2", 9, {"10.8.0.2"});
        api->dialResult = dialResult;
        WindowsPlatform platform;
        const OperationResult result =
            protocol == "PPTP" ? platform.connectPptp("vpn.example", "bob", "secret")
            : protocol == "L2TP"
                ? platform.connectL2tp("vpn.example", "bob", "secret", key)
                : platform.connectIKEv2("vpn.example", "bob", "secret", withoutAdminRights);
        QCOMPARE(result.isSuccess ? QString() : result.message, failure);
        QCOMPARE(api->calls.filter(QRegularExpression("^(TAVERO|credentials|dial|hang|delete)")),
                 calls);
    }

    void ikev2Routes_data()
    {
        QTest::addColumn<bool>("administrator");
        QTest::addColumn<QStringList>("addresses");
        QTest::addColumn<QList<DWORD>>("routeResults");
        QTest::addColumn<bool>("connected");
        QTest::addColumn<QStringList>("routes");
        const QStringList both{"10.8.0.2", "2001:db8::2", "fe80::5", "fe80::6"};
        const QStringList all{"0.0.0.0/1 via 10.8.0.2 if 9", "128.0.0.0/1 via 10.8.0.2 if 9",
                              "::/1 via fe80::5 if 109", "8000::/1 via fe80::5 if 109"};
        QTest::newRow("all four") << true << both << QList<DWORD>{} << true << all;
        QTest::newRow("no link-local address: IPv4 only")
            << true << QStringList{"10.8.0.2", "2001:db8::2"} << QList<DWORD>{} << true
            << QStringList(all.mid(0, 2));
        QTest::newRow("second IPv4 route exists: first undone")
            << true << both << QList<DWORD>{0, 5010} << false << QStringList{};
        QTest::newRow("second IPv6 route refused: IPv6 pair undone")
            << true << both << QList<DWORD>{0, 0, 0, 5} << true << QStringList(all.mid(0, 2));
        QTest::newRow("without rights: no routes")
            << false << both << QList<DWORD>{} << true << QStringList{};
        QTest::newRow("no IPv4 address fails the connect")
            << true << QStringList{"fe80::5"} << QList<DWORD>{} << false << QStringList{};
    }
    void ikev2Routes()
    {
        QFETCH(bool, administrator);
        QFETCH(QStringList, addresses);
        QFETCH(QList<DWORD>, routeResults);
        QFETCH(bool, connected);
        QFETCH(QStringList, routes);
        api->addAdapter("Ethernet", 3, {"192.168.1.5"});
        api->addAdapter("TAVERO IKEv2", 9, addresses);
        api->routeResults = routeResults;
        PlatformOverrides::setAdministrator(administrator);
        WindowsPlatform platform;
        test::MessageCapture capture;
        const OperationResult result = platform.connectIKEv2("h", "u", "p", !administrator);
        QCOMPARE(result.isSuccess, connected);
        QCOMPARE(api->routes, routes);
        QCOMPARE(api->calls.contains("delete TAVERO IKEv2"), !connected);
        // The lookup grew its one-record buffer to what the system asked for.
        QCOMPARE(api->calls.filter("adapters").mid(0, 2),
                 (QStringList{"adapters flags 16 room 376", "adapters flags 16 room 4096"}));
        if (routeResults.value(1) == 5010)
            QVERIFY(capture.contains(QtDebugMsg, "ERROR: OBJECT_ALREADY_EXISTS"));
    }

    void disconnectHangsUpOnlyAConnectedLine()
    {
        for (const bool connected : {true, false}) {
            api->calls.clear();
            api->connected = connected;
            QVERIFY(WindowsPlatform().disconnect().isSuccess);
            const QStringList hangUp = connected ? QStringList{"hang up 119"} : QStringList{};
            const QStringList deletions{"delete TAVERO PPTP", "delete TAVERO L2TP",
                                        "delete TAVERO IKEv2"};
            QCOMPARE(api->calls, QStringList{"enumerate room 1"} + hangUp + deletions);
        }
    }

    void killSwitch()
    {
        const QUuid wired = QUuid::createUuid(), wifi = QUuid::createUuid(),
                    off = QUuid::createUuid();
        const std::vector<std::pair<QUuid, NETCON_STATUS>> machine{
            {wired, NCS_CONNECTED}, {off, NCS_DISCONNECTED}, {wifi, NCS_MEDIA_DISCONNECTED}};
        for (const auto& [id, status] : machine)
            api->connections.m_items.push_back(
                std::make_unique<FakeNetConnection>(api->calls, id, status));
        WindowsPlatform platform;
        QVERIFY(platform.turnOffInternet().isSuccess);
        QCOMPARE(platform.rememberedConnections(), (QList<QUuid>{wired, wifi}));
        QCOMPARE(api->calls.filter("connect"),
                 (QStringList{"disconnect " + wired.toString(), "disconnect " + wifi.toString()}));
        QVERIFY(platform.haveDisabledNetDevicesByKillSwitch());

        // Nothing left to switch off: a failure, and the list stays.
        for (auto& item : api->connections.m_items)
            item->m_status = NCS_DISCONNECTED;
        QCOMPARE(platform.turnOffInternet().message, "warning.failed_to_turn_off_the_internet");
        QCOMPARE(platform.rememberedConnections().size(), 2);

        // The user switched the wired line on already: only Wi-Fi comes back, both are forgotten.
        api->connections.m_items[0]->m_status = NCS_CONNECTED;
        api->calls.clear();
        bool reenabled = false;
        QVERIFY(platform.turnOnInternet(reenabled).isSuccess);
        QVERIFY(reenabled);
        QCOMPARE(api->calls.filter("connect"), QStringList{"connect " + wifi.toString()});
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        // Every fetched connection, the enumerator and the manager are released.
        QCOMPARE(api->calls.count("release"), 5);

        QCOMPARE(platform.turnOnInternet(reenabled).message,
                 "warning.failed_to_turn_on_the_internet");
        QVERIFY(!reenabled);
    }

    void connectionManagerUnavailable()
    {
        test::MapTranslator translator;
        translator.add("QObject", "warning.could_not_connect_to_the_connection_manager_library",
                       "No manager (%1)");
        QCoreApplication::installTranslator(&translator);
        WindowsPlatform platform;
        api->managerResult = HRESULT(0x80040154); // class not registered: its code, signed
        QCOMPARE(platform.turnOffInternet().message, "No manager (-2147221164)");
        api->managerResult = HRESULT(0x800704D5); // "retry": an ordinary failed pass
        QCOMPARE(platform.turnOffInternet().message, "warning.failed_to_turn_off_the_internet");
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        QCoreApplication::removeTranslator(&translator);
    }

    void rdpListener()
    {
        struct Case {
            DWORD state;
            u_short port;
            bool listening;
        };
        for (const Case c : {Case{MIB_TCP_STATE_LISTEN, 3389, true},
                             {MIB_TCP_STATE_LISTEN, 3390, false}, // another port
                             {MIB_TCP_STATE_ESTAB, 3389, false}}) {
            api->tcpRows = {{{MIB_TCP_STATE_TIME_WAIT}, 0, htons(443), 0, 0},
                            {{c.state}, htonl(0x7F000001), htons(c.port), 0, 0}};
            test::MessageCapture capture;
            QCOMPARE(WindowsPlatform::IsRdpListening(), c.listening);
            QVERIFY(capture.contains(QtDebugMsg, "TCP[0] State: 11 - TIME-WAIT"));
        }
    }

    void eventLog()
    {
        Logger logger;
        logger.WriteLog(QString(), LoggerSeverity::Error);
        QVERIFY(api->calls.isEmpty());
        logger.WriteLog("a", LoggerSeverity::Warning);
        logger.WriteLog("b", LoggerSeverity::Information);
        logger.WriteLog("c", LoggerSeverity::Error);
        QCOMPARE(api->calls.filter("event type"),
                 (QStringList{"event type 2 category 0 id c0000101 user set 'a' of 1",
                              "event type 4 category 0 id c0000100 user set 'b' of 1",
                              "event type 1 category 0 id c0000102 user set 'c' of 1"}));
        QCOMPARE(api->calls.count("event source TAVERO"), 3);
        QCOMPARE(api->calls.count("event source closed"), 3);
    }

    void elevationAndWarningBox()
    {
        qunsetenv("TAVERO_NO_ELEVATE");
        QVERIFY(!WindowsPlatform::elevateToAdmin()); // declined
        WindowsPlatform::showWarningBox("TAVERO", "no rights");
        QCOMPARE(api->calls,
                 (QStringList{"shell runas '" +
                                  QFileInfo(QCoreApplication::applicationFilePath()).fileName() +
                                  "' show 1 mask 0 params none",
                              "box free 'TAVERO' 'no rights' style 30"}));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestWindowsPlatform)
#include "tst_windowsplatform.moc"
