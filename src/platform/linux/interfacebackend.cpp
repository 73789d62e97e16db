#include "platform/linux/interfacebackend.h"

#include <QDebug>
#include <QFile>
#include <QJsonObject>
#include <linux/rtnetlink.h>
#include <memory>
#include <net/if.h>
#include <netlink/errno.h>
#include <netlink/netlink.h>
#include <netlink/route/link.h>
#include <netlink/route/route.h>
#include <sys/socket.h>

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

// Route and next-hop state the kernel reports (carrier down, dead, offloaded) is refused when
// adding, so it is never kept.
constexpr unsigned stateFlags = RTNH_COMPARE_MASK | RTNH_F_UNRESOLVED;

QString addressText(nl_addr* address)
{
    if (address == nullptr)
        return QStringLiteral("default");
    char text[INET6_ADDRSTRLEN + 8];
    return QString::fromLatin1(nl_addr2str(address, text, sizeof text));
}

// A route kept for the interface's entry, its addresses as libnl prints them.
QJsonObject routeToJson(rtnl_route* route)
{
    rtnl_nexthop* hop = rtnl_route_nexthop_n(route, 0);
    QJsonObject object{
        {QStringLiteral("family"), rtnl_route_get_family(route)},
        {QStringLiteral("protocol"), rtnl_route_get_protocol(route)},
        {QStringLiteral("scope"), rtnl_route_get_scope(route)},
        {QStringLiteral("priority"), qint64(rtnl_route_get_priority(route))},
        {QStringLiteral("flags"), qint64(rtnl_route_get_flags(route) & ~stateFlags)},
        {QStringLiteral("hopFlags"), qint64(rtnl_route_nh_get_flags(hop) & ~stateFlags)},
        {QStringLiteral("destination"), addressText(rtnl_route_get_dst(route))}};
    if (nl_addr* source = rtnl_route_get_pref_src(route))
        object.insert(QStringLiteral("source"), addressText(source));
    if (nl_addr* gateway = rtnl_route_nh_get_gateway(hop))
        object.insert(QStringLiteral("gateway"), addressText(gateway));
    return object;
}

// The route `object` describes, through interface `interfaceIndex`; null when it describes none
// (it is read back from a file).
RoutePtr routeFromJson(const QJsonObject& object, int interfaceIndex)
{
    const int family = object.value(QLatin1String("family")).toInt();
    if (family != AF_INET && family != AF_INET6)
        return nullptr;
    const auto parse = [family](const QJsonValue& value, nl_addr** address) {
        return value.isString() &&
               nl_addr_parse(value.toString().toLatin1().constData(), family, address) == 0;
    };
    nl_addr* destination = nullptr;
    if (!parse(object.value(QLatin1String("destination")), &destination))
        return nullptr;
    RoutePtr route(rtnl_route_alloc());
    rtnl_nexthop* hop = rtnl_route_nh_alloc();
    if (!route || !hop) {
        nl_addr_put(destination);
        rtnl_route_nh_free(hop);
        return nullptr;
    }
    rtnl_route_set_family(route.get(), uint8_t(family));
    rtnl_route_set_table(route.get(), RT_TABLE_MAIN);
    rtnl_route_set_type(route.get(), RTN_UNICAST);
    rtnl_route_set_protocol(route.get(), uint8_t(object.value(QLatin1String("protocol")).toInt()));
    rtnl_route_set_scope(route.get(), uint8_t(object.value(QLatin1String("scope")).toInt()));
    rtnl_route_set_priority(route.get(),
                            uint32_t(object.value(QLatin1String("priority")).toDouble()));
    rtnl_route_set_flags(route.get(),
                         uint32_t(object.value(QLatin1String("flags")).toDouble()) & ~stateFlags);
    const int setDestination = rtnl_route_set_dst(route.get(), destination);
    nl_addr_put(destination);
    nl_addr* source = nullptr;
    if (parse(object.value(QLatin1String("source")), &source)) {
        rtnl_route_set_pref_src(route.get(), source);
        nl_addr_put(source);
    }
    rtnl_route_nh_set_ifindex(hop, interfaceIndex);
    rtnl_route_nh_set_flags(hop, uint32_t(object.value(QLatin1String("hopFlags")).toDouble()) &
                                     ~stateFlags);
    nl_addr* gateway = nullptr;
    if (parse(object.value(QLatin1String("gateway")), &gateway)) {
        rtnl_route_nh_set_gateway(hop, gateway);
        nl_addr_put(gateway);
    }
    rtnl_route_add_nexthop(route.get(), hop); // the route owns the hop now
    return setDestination == 0 ? std::move(route) : nullptr;
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

InterfaceBackend::InterfaceBackend() = default;

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
    nl_cache* rawRoutes = nullptr;
    const int routeError = rtnl_route_alloc_cache(m_socket, AF_UNSPEC, 0, &rawRoutes);
    if (routeError < 0)
        return libnlFailure(routeError, QStringLiteral("route list"));
    const CachePtr routes(rawRoutes);
    for (nl_object* object = nl_cache_get_first(cache.get()); object != nullptr;
         object = nl_cache_get_next(object)) {
        auto* link = reinterpret_cast<rtnl_link*>(object);
        if (isLoopback(link) || !isUp(link))
            continue;
        const QString name = QString::fromUtf8(rtnl_link_get_name(link));
        const int index = rtnl_link_get_ifindex(link);
        QJsonArray kept;
        for (nl_object* item = nl_cache_get_first(routes.get()); item != nullptr;
             item = nl_cache_get_next(item)) {
            auto* route = reinterpret_cast<rtnl_route*>(item);
            if (needsRestoring(route, index))
                kept.append(routeToJson(route));
        }
        connections.append({name, name, QString::number(index), kept});
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
    return setUp(connection.id, false);
}

NetworkSwitchStatus InterfaceBackend::switchOn(const QString& id, const QJsonArray& restore)
{
    const NetworkSwitchStatus status = setUp(id, true);
    if (status.ok())
        restoreRoutes(id, restore);
    return status;
}

void InterfaceBackend::restoreRoutes(const QString& interfaceName, const QJsonArray& routes)
{
    // The interface may have been made anew under the same name: route by today's index.
    const unsigned index = ::if_nametoindex(QFile::encodeName(interfaceName).constData());
    if (index == 0)
        return;
    for (const QJsonValue& value : routes) {
        const RoutePtr route = routeFromJson(value.toObject(), int(index));
        if (!route) {
            qWarning() << "Skipped an unreadable route of" << interfaceName;
            continue;
        }
        const int error = rtnl_route_add(m_socket, route.get(), NLM_F_EXCL);
        if (error < 0 && error != -NLE_EXIST)
            qWarning() << "Could not restore a route of" << interfaceName << nl_geterror(error);
    }
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
