#pragma once

#include <QString>
#include <memory>
#include <netlink/addr.h>
#include <netlink/cache.h>
#include <netlink/errno.h>
#include <netlink/netlink.h>
#include <netlink/socket.h>

// Owning handles for libnl objects and the route socket every rtnetlink user here opens.
namespace tavero::netlink {

struct SocketDeleter {
    void operator()(nl_sock* socket) const { nl_socket_free(socket); }
};
struct CacheDeleter {
    void operator()(nl_cache* cache) const { nl_cache_free(cache); }
};
struct AddressDeleter {
    void operator()(nl_addr* address) const { nl_addr_put(address); }
};
using SocketPtr = std::unique_ptr<nl_sock, SocketDeleter>;
using CachePtr = std::unique_ptr<nl_cache, CacheDeleter>;
using AddressPtr = std::unique_ptr<nl_addr, AddressDeleter>;

// A socket connected to NETLINK_ROUTE; null with `detail` set when that fails.
inline SocketPtr connectedSocket(QString& detail)
{
    SocketPtr socket(nl_socket_alloc());
    const int error = socket ? nl_connect(socket.get(), NETLINK_ROUTE) : -NLE_NOMEM;
    if (error < 0) {
        detail = QStringLiteral("netlink: ") + QString::fromUtf8(nl_geterror(error));
        return nullptr;
    }
    return socket;
}

// `text` ("10.0.0.0/1", "fe80::/10", ...) as an address of `family`; null when it is none.
inline AddressPtr parsedAddress(const QString& text, int family)
{
    nl_addr* address = nullptr;
    if (nl_addr_parse(text.toLatin1().constData(), family, &address) < 0)
        return nullptr;
    return AddressPtr(address);
}

} // namespace tavero::netlink
