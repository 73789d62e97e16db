#pragma once

#include "api/operationresult.h"
#include "platform/tunnelnetwork.h"

#include <QString>

namespace tavero {

// Everything the client asks of the operating system, behind one interface. The connection engine
// and the settings dialog are written against this alone. Failures come back as values: no
// operation lets an exception escape.
//
// Threads: the three connect operations may run on a worker thread while other threads use the
// object; callers never run two dials at once, nor two of turnOffInternet(), turnOnInternet() and
// turnOnNetDevices() at once.
class IPlatform {
public:
    virtual ~IPlatform() = default;

    // True when the client is registered to start when the user logs on.
    virtual bool isRunOnStart() = 0;
    // Registers (true) or removes (false) that start entry.
    virtual void setRunOnStart(bool run) = 0;
    // The platform can dial PPTP.
    virtual bool pptpSupports() = 0;
    // The platform can dial L2TP/IPsec.
    virtual bool l2tpSupports() = 0;
    // connectPptp() blocks and may be run on a worker thread.
    virtual bool isPptpAsync() = 0;
    // connectL2tp() blocks and may be run on a worker thread.
    virtual bool isL2tpAsync() = 0;
    // Hangs up the program's dial-up tunnel and removes its dial-up entries; succeeds when none is
    // up.
    virtual OperationResult disconnect() = 0;
    // Each blocks until the tunnel to `host` is up or has failed.
    virtual OperationResult connectPptp(const QString& host, const QString& user,
                                        const QString& password) = 0;
    virtual OperationResult connectL2tp(const QString& host, const QString& user,
                                        const QString& password, const QString& preSharedKey) = 0;
    // With `withoutAdminRights` false the tunnel carries all traffic through explicit routes, and
    // the call is refused when the process is not an administrator.
    virtual OperationResult connectIKEv2(const QString& host, const QString& user,
                                         const QString& password, bool withoutAdminRights) = 0;
    // Switches every active network connection of the machine off and remembers which.
    virtual OperationResult turnOffInternet() = 0;
    // Switches the remembered connections on again and forgets them; `reenabled` becomes true when
    // at least one was switched on.
    virtual OperationResult turnOnInternet(bool& reenabled) = 0;
    // True while switched-off connections are remembered.
    virtual bool haveDisabledNetDevicesByKillSwitch() = 0;
    // Runs turnOnInternet() and returns its `reenabled`; false when the switch-on failed outright.
    virtual bool turnOnNetDevices() = 0;

    // True when the platform, not the OpenVPN program, puts an OpenVPN tunnel's DNS servers and
    // IPv6 policy in place; the driver then hands it what the server pushed. Where OpenVPN
    // applies them itself (Windows) the defaults below do nothing.
    virtual bool appliesTunnelNetwork() { return false; }
    // While the tunnel is up, name look-ups go to its DNS servers only, and IPv6 leaves only
    // through a tunnel that carries it. A failure means the tunnel must not be used.
    virtual OperationResult applyTunnelNetwork(const TunnelNetwork& network)
    {
        Q_UNUSED(network)
        return {};
    }
    // Undoes applyTunnelNetwork(); nothing when nothing is applied.
    virtual void releaseTunnelNetwork() {}
};

} // namespace tavero
