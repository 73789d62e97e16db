#pragma once

#include "api/operationresult.h"
#include "platform/linux/tunnelresolver.h"
#include "platform/tunnelnetwork.h"

#include <QJsonObject>
#include <QString>

namespace tavero {

// What the client changes on the system while a tunnel (OpenVPN, IKEv2) is up, and its undoing:
// DNS through the tunnel (TunnelResolver) and, for a tunnel without IPv6, no IPv6 over the
// physical links (Ipv6Guard).
//
// Before changing anything it writes what it is about to change to its state file (0600, in the
// kill switch's private state directory) together with its owner (RuntimeDirectory::ownerTag()).
// restoreLeftover() undoes the changes of an owner that no longer runs, so a client killed while
// connected leaves the machine as it found it once the next copy starts.
class TunnelNetworkGuard {
public:
    TunnelNetworkGuard(QString stateFile, TunnelResolver::Options resolver);
    ~TunnelNetworkGuard(); // release()
    TunnelNetworkGuard(const TunnelNetworkGuard&) = delete;
    TunnelNetworkGuard& operator=(const TunnelNetworkGuard&) = delete;

    // Replaces what an earlier apply() did. On failure nothing stays changed.
    OperationResult apply(const TunnelNetwork& network);
    // Undoes apply(); the state file goes once everything is back.
    void release();

    // Undoes what the state file names when its owner has ended; leaves a running owner's alone.
    static void restoreLeftover(const QString& stateFile);
    // $XDG_STATE_HOME/tavero/tunnelnetwork.json, else ~/.local/state/tavero/tunnelnetwork.json.
    static QString stateFileDefault();

private:
    bool save();

    QString m_stateFile;
    TunnelResolver m_resolver;
    QJsonObject m_state; // what is applied: "ipv6", "resolver", "owner"
};

} // namespace tavero
