#pragma once

#include <QHostAddress>
#include <QString>
#include <memory>
#include <vector>

struct rtnl_route;

namespace tavero {

// The routes that pull all traffic into a tunnel without touching the default route: 0.0.0.0/1
// and 128.0.0.0/1 (and ::/1 and 8000::/1) on the tunnel's interface, metric 0, plus a host route
// to the VPN server through the gateway of the old default route, so the tunnel's own packets
// still leave the old way. Added in the main table through rtnetlink.
//
// Each add either makes its whole set or leaves nothing of it; remove() deletes what this object
// added, in reverse order, and the destructor calls it. Not thread-safe; one tunnel at a time.
class HalfDefaultRoutes {
public:
    HalfDefaultRoutes();
    ~HalfDefaultRoutes();
    HalfDefaultRoutes(const HalfDefaultRoutes&) = delete;
    HalfDefaultRoutes& operator=(const HalfDefaultRoutes&) = delete;

    // The host route to `server` through the old default gateway of its family. False with
    // `detail` when there is no default route or the kernel refuses.
    bool addServerRoute(const QHostAddress& server, QString& detail);
    // The two half-default routes of `family` (AF_INET or AF_INET6) on `interfaceIndex`. The
    // tunnel is point to point, so the routes name the device and no next hop; a half-made pair
    // is undone.
    bool addHalves(int family, int interfaceIndex, QString& detail);
    // Deletes everything added, newest first; routes already gone with their device are fine.
    void remove();
    // How many routes this object has added and not yet removed.
    int count() const { return int(m_added.size()); }

private:
    bool add(rtnl_route* route, QString& detail, int flags);

    struct RouteDeleter {
        void operator()(rtnl_route* route) const;
    };
    std::vector<std::unique_ptr<rtnl_route, RouteDeleter>> m_added;
};

} // namespace tavero
