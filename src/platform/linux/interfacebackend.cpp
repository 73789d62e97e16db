#include "platform/linux/interfacebackend.h"

#include <QDebug>
#include <QFile>
#include <linux/rtnetlink.h>
#include <map>
#include <memory>
#include <net/if.h>
#include <netlink/errno.h>
#include <netlink/netlink.h>
#include <netlink/route/link.h>
#include <netlink/route/route.h>
#include <sys/socket.h>
#include <vector>

namespace tavero {
namespace {

struct LinkDeleter {
    void operator()(rtnl_link* link) const { rtnl_link_put(link); }
};
struct CacheDeleter {
    void operator()(nl_cache* cache) const { nl_cache_free(cache); }
};
struct RouteDeleter {
    void operator()(rtnl_route* route) const { rtnl_route_put(route); }
};
using LinkPtr = std::unique_ptr<rtnl_link, LinkDeleter>;
using CachePtr = std::unique_ptr<nl_cache, CacheDeleter>;
using RoutePtr = std::unique_ptr<rtnl_route, RouteDeleter>;

// A route the kernel will not bring back by itself when the link comes up again.
bool needsRestoring(rtnl_route* route, int interfaceIndex)
{
    if (rtnl_route_get_table(route) != RT_TABLE_MAIN || rtnl_route_get_type(route) != RTN_UNICAST)
        return false;
    const uint8_t protocol = rtnl_route_get_protocol(route);
    if (protocol == RTPROT_KERNEL || protocol == RTPROT_RA)
        return false;
    return rtnl_route_get_nnexthops(route) == 1 &&
           rtnl_route_nh_get_ifindex(rtnl_route_nexthop_n(route, 0)) == interfaceIndex;
}

NetworkSwitchStatus libnlFailure(int error, const QString& what)
{
    return NetworkSwitchStatus::failure(error, what + QStringLiteral(": ") +
                                                   QString::fromUtf8(nl_geterror(error)));
}

bool isLoopback(rtnl_link* link)
{
    return (rtnl_link_get_flags(link) & IFF_LOOPBACK) != 0;
}
bool isUp(rtnl_link* link)
{
    return (rtnl_link_get_flags(link) & IFF_UP) != 0;
}

} // namespace

struct InterfaceBackend::SavedRoutes {
    std::map<QString, std::vector<RoutePtr>> byInterface;
};

InterfaceBackend::InterfaceBackend()
    : m_savedRoutes(std::make_unique<SavedRoutes>())
{}

InterfaceBackend::~InterfaceBackend()
{
    close();
}

QString InterfaceBackend::name() const
{
    return QStringLiteral("interfaces");
}

NetworkSwitchStatus InterfaceBackend::open()
{
    close();
    m_socket = nl_socket_alloc();
    if (m_socket == nullptr)
        return libnlFailure(-NLE_NOMEM, QStringLiteral("netlink socket"));
    const int error = nl_connect(m_socket, NETLINK_ROUTE);
    if (error < 0) {
        close();
        return libnlFailure(error, QStringLiteral("netlink connect"));
    }
    return {};
}

void InterfaceBackend::close()
{
    if (m_socket != nullptr) {
        nl_socket_free(m_socket);
        m_socket = nullptr;
    }
}

NetworkSwitchStatus InterfaceBackend::listSwitchedOn(QVector<NetworkConnection>& connections)
{
    if (m_socket == nullptr)
        return libnlFailure(-NLE_BAD_SOCK, QStringLiteral("interface list"));
    nl_cache* raw = nullptr;
    const int error = rtnl_link_alloc_cache(m_socket, AF_UNSPEC, &raw);
    if (error < 0)
        return libnlFailure(error, QStringLiteral("interface list"));
    const CachePtr cache(raw);
    for (nl_object* object = nl_cache_get_first(cache.get()); object != nullptr;
         object = nl_cache_get_next(object)) {
        auto* link = reinterpret_cast<rtnl_link*>(object);
        if (isLoopback(link) || !isUp(link))
            continue;
        const QString name = QString::fromUtf8(rtnl_link_get_name(link));
        connections.append({name, name, QString::number(rtnl_link_get_ifindex(link))});
    }
    return {};
}

NetworkSwitchStatus InterfaceBackend::stateOf(const QString& id, State& state)
{
    if (m_socket == nullptr)
        return libnlFailure(-NLE_BAD_SOCK, id);
    rtnl_link* raw = nullptr;
    const int error = rtnl_link_get_kernel(m_socket, 0, QFile::encodeName(id).constData(), &raw);
    if (error == -NLE_OBJ_NOTFOUND || error == -NLE_NODEV) {
        state = State::Missing;
        return {};
    }
    if (error < 0)
        return libnlFailure(error, id);
    const LinkPtr link(raw);
    state = isUp(link.get()) ? State::On : State::Off;
    return {};
}

NetworkSwitchStatus InterfaceBackend::switchOff(const NetworkConnection& connection)
{
    if (m_socket != nullptr)
        saveRoutes(connection.id, connection.handle.toInt());
    return setUp(connection.id, false);
}

NetworkSwitchStatus InterfaceBackend::switchOn(const QString& id)
{
    const NetworkSwitchStatus status = setUp(id, true);
    if (status.ok())
        restoreRoutes(id);
    return status;
}

void InterfaceBackend::saveRoutes(const QString& interfaceName, int interfaceIndex)
{
    nl_cache* raw = nullptr;
    const int error = rtnl_route_alloc_cache(m_socket, AF_UNSPEC, 0, &raw);
    if (error < 0) {
        qWarning() << "Cannot read the routes of" << interfaceName << nl_geterror(error);
        return;
    }
    const CachePtr cache(raw);
    std::vector<RoutePtr>& saved = m_savedRoutes->byInterface[interfaceName];
    for (nl_object* object = nl_cache_get_first(cache.get()); object != nullptr;
         object = nl_cache_get_next(object)) {
        auto* route = reinterpret_cast<rtnl_route*>(object);
        if (!needsRestoring(route, interfaceIndex))
            continue;
        RoutePtr copy(reinterpret_cast<rtnl_route*>(nl_object_clone(object)));
        if (!copy)
            continue;
        // State the kernel reports (carrier down, dead, offloaded) is refused when adding.
        constexpr unsigned stateFlags = RTNH_COMPARE_MASK | RTNH_F_UNRESOLVED;
        rtnl_route_unset_flags(copy.get(), stateFlags);
        rtnl_route_nh_unset_flags(rtnl_route_nexthop_n(copy.get(), 0), stateFlags);
        saved.push_back(std::move(copy));
    }
}

void InterfaceBackend::restoreRoutes(const QString& interfaceName)
{
    const auto found = m_savedRoutes->byInterface.find(interfaceName);
    if (found == m_savedRoutes->byInterface.end())
        return;
    // The interface may have been made anew under the same name: route by today's index.
    const unsigned currentIndex = ::if_nametoindex(QFile::encodeName(interfaceName).constData());
    for (const RoutePtr& route : found->second) {
        if (route == nullptr)
            continue;
        if (currentIndex != 0)
            rtnl_route_nh_set_ifindex(rtnl_route_nexthop_n(route.get(), 0), int(currentIndex));
        const int error = rtnl_route_add(m_socket, route.get(), NLM_F_EXCL);
        if (error < 0 && error != -NLE_EXIST)
            qWarning() << "Could not restore a route of" << interfaceName << nl_geterror(error);
    }
    m_savedRoutes->byInterface.erase(found);
}

NetworkSwitchStatus InterfaceBackend::setUp(const QString& interfaceName, bool up)
{
    if (m_socket == nullptr)
        return libnlFailure(-NLE_BAD_SOCK, interfaceName);
    rtnl_link* raw = nullptr;
    int error =
        rtnl_link_get_kernel(m_socket, 0, QFile::encodeName(interfaceName).constData(), &raw);
    if (error < 0)
        return libnlFailure(error, interfaceName);
    const LinkPtr current(raw);
    const LinkPtr change(rtnl_link_alloc());
    if (!change)
        return libnlFailure(-NLE_NOMEM, interfaceName);
    if (up)
        rtnl_link_set_flags(change.get(), IFF_UP);
    else
        rtnl_link_unset_flags(change.get(), IFF_UP);
    error = rtnl_link_change(m_socket, current.get(), change.get(), 0);
    if (error < 0)
        return libnlFailure(error, interfaceName);
    return {};
}

} // namespace tavero
