#pragma once

#include "platform/adapterinfo.h"
#include "platform/guardedplatform.h"
#include "platform/linux/networkmanagerdialup.h"
#include "platform/linux/networkswitchbackend.h"
#include "platform/linux/strongswantunnel.h"

#include <QHash>
#include <QJsonArray>
#include <QStringList>
#include <functional>
#include <memory>

namespace tavero {

// The platform layer on Linux.
//
// Network switch-off: with NetworkManager on the system bus its active connections are taken down
// and remembered by UUID; otherwise every non-loopback interface that is up is set down and
// remembered by name. Only what was remembered is ever switched on again.
//
// IKEv2 with administrator rights: the client's own charon (StrongswanTunnel), whose TUN device is
// the adapter of the "TAVERO IKEv2" entry, and the half-default routes over it
// (HalfDefaultRoutes); disconnect() removes both. Without rights, and for L2TP and PPTP:
// NetworkManager's VPN plugins (NetworkManagerDialup); without NetworkManager or the plugin those
// connects fail with their usual messages.
//
// OpenVPN tunnels: their DNS servers and the IPv6 block (TunnelNetworkGuard) while they are up.
class LinuxPlatform : public GuardedPlatform {
public:
    using BackendFactory = std::function<std::unique_ptr<NetworkSwitchBackend>()>;

    // Where the platform reads and writes; empty members take the system's defaults.
    struct Options {
        // Directory of the start entry; default $XDG_CONFIG_HOME/autostart or ~/.config/autostart,
        // read at each call.
        QString autostartDirectory;
        // The program the start entry runs; default this process's executable.
        QString programPath;
        // Makes the network switch for a pass that starts with nothing remembered; default picks
        // NetworkManager when it runs on the system bus, interfaces otherwise.
        BackendFactory networkBackendFactory;
        // Where the IKEv2 tunnel's charon, swanctl and private directory are.
        StrongswanTunnel::Paths ikev2;
        // Makes the NetworkManager dial-up; default: NetworkManager on the system bus.
        std::function<std::unique_ptr<NetworkManagerDialup>()> dialupFactory;
        // Where the switched-off connections are kept across a crash; empty keeps them in memory
        // only. The default constructor uses killSwitchStateFileDefault().
        QString killSwitchStateFile;
        // Where the DNS and IPv6 changes of a running tunnel are kept across a crash; empty keeps
        // them in memory only. The default constructor uses
        // TunnelNetworkGuard::stateFileDefault() and undoes what a dead client left there.
        QString tunnelNetworkStateFile;
    };

    // The product's platform: switched-off connections survive a crash in
    // killSwitchStateFileDefault(), and a start finds them there.
    LinuxPlatform();
    explicit LinuxPlatform(Options options);
    ~LinuxPlatform() override;

    bool isRunOnStart() override;
    void setRunOnStart(bool run) override;
    bool pptpSupports() override;
    bool l2tpSupports() override;
    bool isPptpAsync() override;
    bool isL2tpAsync() override;
    bool haveDisabledNetDevicesByKillSwitch() override;
    // With administrator rights, unless TAVERO_KEEP_NETWORK=1.
    bool appliesTunnelNetwork() override;
    OperationResult applyTunnelNetwork(const TunnelNetwork& network) override;
    void releaseTunnelNetwork() override;

    // Identifiers of the switched-off connections, in the order they were switched off.
    QStringList rememberedConnections() const { return m_remembered; }
    // The start entry's file.
    QString autostartFilePath() const;
    // $XDG_STATE_HOME/tavero/killswitch.json, else ~/.local/state/tavero/killswitch.json.
    static QString killSwitchStateFileDefault();

    // Effective uid 0, or CAP_NET_ADMIN in the effective capability set.
    static bool isRunningAsAdministrator();

    // Starts an elevated copy through pkexec (keeping the display variables) and returns true once
    // that copy has started; false when elevation is off (TAVERO_NO_ELEVATE=1), impossible (no
    // pkexec, no display) or declined.
    static bool elevateToAdmin();

    // Called at start-up by every copy: an elevated copy tells the copy that started it that it
    // runs, so that copy can end.
    static void confirmElevatedStart();

    // A local TCP socket (IPv4 or IPv6) listens on port 3389. A forced answer
    // (PlatformOverrides::rdpListening) wins.
    static bool IsRdpListening();
    // The same test over the given tables in the /proc/net/tcp format; unreadable files count as
    // empty.
    static bool IsRdpListening(const QStringList& tcpTables);

    // Interface index and unicast addresses of the interface named `friendlyName` ("TAVERO IKEv2"
    // names the IKEv2 tunnel's device while one is up); a default value when there is none.
    static AdapterInfo getAdapterInfo(const QString& friendlyName);

    // NetworkManager when its service runs on the system bus, interfaces otherwise.
    static std::unique_ptr<NetworkSwitchBackend> chooseNetworkSwitchBackend();

protected:
    OperationResult forceDisconnect() override;
    OperationResult forceConnectPptp(const QString& host, const QString& user,
                                     const QString& password) override;
    OperationResult forceConnectL2tp(const QString& host, const QString& user,
                                     const QString& password, const QString& preSharedKey) override;
    OperationResult forceConnectIKEv2(const QString& host, const QString& user,
                                      const QString& password, bool withoutAdminRights) override;
    OperationResult forceTurnOffInternet() override;
    OperationResult forceTurnOnInternet(bool& reenabled) override;

private:
    OperationResult enableOrDisableConnections(bool enable, bool& reenabled);
    void switchOffPass(NetworkSwitchBackend& backend, NetworkSwitchStatus& status);
    void switchOnPass(NetworkSwitchBackend& backend, NetworkSwitchStatus& status, bool& reenabled);
    QString programPath() const;
    static Options defaultOptions();
    void loadRemembered();
    bool saveRemembered();

    void hangUpIKEv2();
    std::unique_ptr<NetworkManagerDialup> dialup() const;
    OperationResult dialThroughNetworkManager(NetworkManagerDialup::Kind kind, const QString& host,
                                              const QString& user, const QString& password,
                                              const QString& preSharedKey, const char* failure);

    Options m_options;
    std::unique_ptr<StrongswanTunnel> m_ikev2;
    std::unique_ptr<class HalfDefaultRoutes> m_ikev2Routes;
    std::unique_ptr<class TunnelNetworkGuard> m_tunnelNetwork;
    bool m_ikev2Network = false; // the IKEv2 tunnel applied m_tunnelNetwork
    // Backend that wrote the remembered identifiers of an earlier run ("interfaces", ...).
    QString m_rememberedBackend;
    // The backend that made the remembered list; identifiers only mean something to it.
    std::unique_ptr<NetworkSwitchBackend> m_backend;
    QStringList m_remembered;
    // What each remembered connection needs to come back as it was; on disk with the ids.
    QHash<QString, QJsonArray> m_restore;
};

} // namespace tavero
