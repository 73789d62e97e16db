#pragma once

#include "platform/adapterinfo.h"
#include "platform/guardedplatform.h"

#include <QList>
#include <QString>
#include <QUuid>

struct _MIB_IPFORWARD_ROW2;

namespace tavero {

// The platform layer on Windows. Every system call goes through Win32Api::current().
//
// Dial-up: one phonebook entry per protocol ("TAVERO PPTP", "TAVERO L2TP", "TAVERO IKEv2") in the
// user's default phonebook, written just before dialling and dialled synchronously; disconnect()
// hangs up the first active dial-up connection and deletes all three entries. With administrator
// rights the IKEv2 entry leaves the IPv4 default gateway alone and four half-default routes on the
// tunnel's adapter pull all traffic in. Network switch-off goes through the COM network
// connection manager and remembers the GUIDs it switched off; only those are switched on again.
class WindowsPlatform : public GuardedPlatform {
public:
    enum vpn_type { VpnPptp = 0, VpnL2tp = 1, VpnIkev2 = 2 };

    WindowsPlatform() = default;
    ~WindowsPlatform() override = default;

    bool isRunOnStart() override;
    void setRunOnStart(bool run) override;
    bool pptpSupports() override { return true; }
    bool l2tpSupports() override { return true; }
    bool isPptpAsync() override { return true; }
    bool isL2tpAsync() override { return true; }
    bool haveDisabledNetDevicesByKillSwitch() override;

    // GUIDs of the connections the kill switch switched off, in that order.
    const QList<QUuid>& rememberedConnections() const { return m_remembered; }

    // The process token is a member of the local Administrators group (forced answers of
    // PlatformOverrides win).
    static bool isRunningAsAdministrator();
    // Starts this program again with the "runas" verb; true when the start was accepted.
    static bool elevateToAdmin();
    // Elevation hands nothing over on Windows; present so that start-up reads alike everywhere.
    static void confirmElevatedStart() {}
    // A local IPv4 TCP socket listens on port 3389.
    static bool IsRdpListening();
    // Interface indexes and unicast addresses of the adapter with exactly that friendly name.
    static AdapterInfo getAdapterInfo(const QString& friendlyName);
    // The two half-default routes of one family on the adapter; a half-made pair is undone.
    static bool AddIpv4RoutesToAdapter(const AdapterInfo& adapter);
    static bool AddIpv6RoutesToAdapter(const AdapterInfo& adapter);
    // The modal start-up warning box (no owner, warning icon, one OK button).
    static void showWarningBox(const QString& caption, const QString& text);

    // The per-user run list that holds the start entry "TAVERO".
    static QString runKeyPath();

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
    void createvpn(const QString& entryName, const QString& host, const QString& user,
                   const QString& password, const QString& preSharedKey, vpn_type type,
                   bool withoutAdminRights);
    bool connectVpn(const QString& host, const QString& entryName, const QString& user,
                    const QString& password, const QString& preSharedKey, vpn_type type);
    // Dials the entry and waits for the answer (RasDialW with no notifier, `notifierType` passed
    // on); a refused attempt is hung up.
    bool dialUp(const QString& entryName, const QString& user, const QString& password,
                unsigned long notifierType);
    OperationResult enableOrDisableConnections(bool enable, bool& reenabled);
    static bool guidInContainerAndEraseIfExists(const QUuid& guid, QList<QUuid> list);

    static bool AddRoute(const _MIB_IPFORWARD_ROW2& row);
    static bool DeleteRoute(const _MIB_IPFORWARD_ROW2& row);

    QList<QUuid> m_remembered;
};

} // namespace tavero
