#include "platform/linux/halfdefaultroutes.h"

#include "platform/linux/netlinkhandles.h"

#include <QDebug>
#include <linux/rtnetlink.h>
#include <netlink/addr.h>
#include <netlink/errno.h>
#include <netlink/netlink.h>
#include <netlink/route/route.h>
#include <sys/socket.h>

namespace tavero {
namespace {

using netlink::AddressPtr;
using netlink::CachePtr;
using netlink::connectedSocket;
using netlink::parsedAddress;
using netlink::SocketPtr;

rtnl_route* newRoute(int family, nl_addr* destination, rtnl_nexthop* nexthop)
{
    rtnl_route* route = rtnl_route_alloc();
    rtnl_route_set_family(route, uint8_t(family));
    rtnl_route_set_table(route, RT_TABLE_MAIN);
    rtnl_route_set_protocol(route, RTPROT_STATIC);
    rtnl_route_set_type(route, RTN_UNICAST);
    rtnl_route_set_priority(route, 0);
    rtnl_route_set_dst(route, destination);
    rtnl_route_add_nexthop(route, nexthop);
    return route;
}

// The first-listed default route of the main table with the lowest metric.
struct OldGateway {
    AddressPtr gateway;
    int interfaceIndex = 0;
};
OldGateway oldDefaultGateway(nl_sock* socket, int family)
{
    OldGateway found;
    nl_cache* raw = nullptr;
    if (rtnl_route_alloc_cache(socket, family, 0, &raw) < 0)
        return found;
    const CachePtr cache(raw);
    uint32_t best = UINT32_MAX;
    for (nl_object* object = nl_cache_get_first(cache.get()); object != nullptr;
         object = nl_cache_get_next(object)) {
        auto* route = reinterpret_cast<rtnl_route*>(object);
        nl_addr* destination = rtnl_route_get_dst(route);
        if (rtnl_route_get_table(route) != RT_TABLE_MAIN ||
            rtnl_route_get_type(route) != RTN_UNICAST || destination == nullptr ||
            nl_addr_get_prefixlen(destination) != 0 || rtnl_route_get_nnexthops(route) < 1 ||
            rtnl_route_get_priority(route) >= best)
            continue;
        rtnl_nexthop* nexthop = rtnl_route_nexthop_n(route, 0);
        nl_addr* gateway = rtnl_route_nh_get_gateway(nexthop);
        best = rtnl_route_get_priority(route);
        found.gateway.reset(gateway != nullptr ? nl_addr_clone(gateway) : nullptr);
        found.interfaceIndex = rtnl_route_nh_get_ifindex(nexthop);
    }
    return found;
}

} // namespace

void HalfDefaultRoutes::RouteDeleter::operator()(rtnl_route* route) const
{
    rtnl_route_put(route);
}

HalfDefaultRoutes::HalfDefaultRoutes() = default;

HalfDefaultRoutes::~HalfDefaultRoutes()
{
    remove();
}

bool HalfDefaultRoutes::add(rtnl_route* route, QString& detail, int flags)
{
    std::unique_ptr<rtnl_route, RouteDeleter> owned(route);
    const SocketPtr socket = connectedSocket(detail);
    if (!socket)
        return false;
    const int error = rtnl_route_add(socket.get(), route, flags);
    if (error < 0) {
        detail = QString::fromUtf8(nl_geterror(error));
        return false;
    }
    m_added.push_back(std::move(owned));
    return true;
}

bool HalfDefaultRoutes::addServerRoute(const QHostAddress& server, QString& detail)
{
    const int family = server.protocol() == QAbstractSocket::IPv6Protocol ? AF_INET6 : AF_INET;
    const SocketPtr socket = connectedSocket(detail);
    if (!socket)
        return false;
    OldGateway old = oldDefaultGateway(socket.get(), family);
    if (old.interfaceIndex == 0) {
        detail = QStringLiteral("no default route to reach the server");
        return false;
    }
    const AddressPtr host = parsedAddress(server.toString(), family);
    if (!host) {
        detail = QStringLiteral("bad server address ") + server.toString();
        return false;
    }
    rtnl_nexthop* nexthop = rtnl_route_nh_alloc();
    rtnl_route_nh_set_ifindex(nexthop, old.interfaceIndex);
    if (old.gateway)
        rtnl_route_nh_set_gateway(nexthop, old.gateway.get());
    rtnl_route* route = newRoute(family, host.get(), nexthop);
    rtnl_route_set_scope(route, old.gateway ? RT_SCOPE_UNIVERSE : RT_SCOPE_LINK);
    // One left by a run of the client that ended without hanging up is taken over.
    if (!add(route, detail, NLM_F_CREATE | NLM_F_REPLACE)) {
        detail =
            QStringLiteral("host route to ") + server.toString() + QStringLiteral(": ") + detail;
        return false;
    }
    return true;
}

bool HalfDefaultRoutes::addHalves(int family, int interfaceIndex, QString& detail)
{
    const QStringList halves =
        family == AF_INET6
            ? QStringList{QStringLiteral("::/1"), QStringLiteral("8000::/1")}
            : QStringList{QStringLiteral("0.0.0.0/1"), QStringLiteral("128.0.0.0/1")};
    const size_t before = m_added.size();
    for (const QString& half : halves) {
        const AddressPtr destination = parsedAddress(half, family);
        QString failure;
        bool made = false;
        if (destination) {
            rtnl_nexthop* nexthop = rtnl_route_nh_alloc();
            rtnl_route_nh_set_ifindex(nexthop, interfaceIndex);
            rtnl_route* route = newRoute(family, destination.get(), nexthop);
            rtnl_route_set_scope(route, RT_SCOPE_LINK);
            // A half that exists already is somebody else's and must not become ours.
            made = add(route, failure, NLM_F_CREATE | NLM_F_EXCL);
        } else {
            failure = QStringLiteral("cannot parse the destination");
        }
        if (!made) {
            detail = QStringLiteral("route ") + half + QStringLiteral(": ") + failure;
            // Either both halves exist or neither.
            while (m_added.size() > before) {
                QString ignored;
                const SocketPtr socket = connectedSocket(ignored);
                if (socket)
                    rtnl_route_delete(socket.get(), m_added.back().get(), 0);
                m_added.pop_back();
            }
            return false;
        }
    }
    return true;
}

void HalfDefaultRoutes::remove()
{
    if (m_added.empty())
        return;
    QString detail;
    const SocketPtr socket = connectedSocket(detail);
    while (!m_added.empty()) {
        if (socket) {
            const int error = rtnl_route_delete(socket.get(), m_added.back().get(), 0);
            // A route on the tunnel's device is gone with the device: nothing to undo.
            if (error < 0 && error != -NLE_OBJ_NOTFOUND && error != -NLE_NODEV)
                qWarning() << "Could not delete a route of the tunnel:" << nl_geterror(error);
        }
        m_added.pop_back();
    }
}

} // namespace tavero
