#include "platform/linux/ipv6guard.h"

#include "platform/linux/netlinkhandles.h"

#include <QFile>
#include <QHostAddress>
#include <QStringList>
#include <linux/fib_rules.h>
#include <linux/rtnetlink.h>
#include <memory>
#include <netlink/addr.h>
#include <netlink/errno.h>
#include <netlink/netlink.h>
#include <netlink/route/rule.h>
#include <sys/socket.h>
#include <vector>

namespace tavero {
namespace {

struct RuleDeleter {
    void operator()(rtnl_rule* rule) const { rtnl_rule_put(rule); }
};
using netlink::connectedSocket;
using netlink::SocketPtr;

QString netlinkError(const char* what, int error)
{
    return QString::fromLatin1(what) + QStringLiteral(": ") + QString::fromUtf8(nl_geterror(error));
}

int addRule(nl_sock* socket, unsigned priority, uint8_t action, const QString& destination)
{
    const std::unique_ptr<rtnl_rule, RuleDeleter> rule(rtnl_rule_alloc());
    rtnl_rule_set_family(rule.get(), AF_INET6);
    rtnl_rule_set_prio(rule.get(), priority);
    rtnl_rule_set_action(rule.get(), action);
    if (action == FR_ACT_TO_TBL)
        rtnl_rule_set_table(rule.get(), RT_TABLE_MAIN);
    if (!destination.isEmpty()) {
        const netlink::AddressPtr address = netlink::parsedAddress(destination, AF_INET6);
        if (!address)
            return -NLE_INVAL;
        rtnl_rule_set_dst(rule.get(), address.get());
    }
    return rtnl_rule_add(socket, rule.get(), NLM_F_CREATE);
}

} // namespace

bool Ipv6Guard::apply(const QString& serverAddress, QString& detail)
{
    if (!QFile::exists(QStringLiteral("/proc/net/if_inet6")))
        return true; // no IPv6 in this kernel: nothing can leak
    if (!remove(detail))
        return false;
    const SocketPtr socket = connectedSocket(detail);
    if (!socket)
        return false;
    QStringList passed{QStringLiteral("fe80::/10"), QStringLiteral("ff00::/8")};
    if (QHostAddress(serverAddress).protocol() == QAbstractSocket::IPv6Protocol)
        passed << QHostAddress(serverAddress).toString() + QStringLiteral("/128");
    int error = 0;
    for (const QString& destination : qAsConst(passed)) {
        if (error >= 0)
            error = addRule(socket.get(), passPriority, FR_ACT_TO_TBL, destination);
    }
    if (error >= 0)
        error = addRule(socket.get(), blockPriority, FR_ACT_UNREACHABLE, {});
    if (error < 0) {
        detail = netlinkError("cannot add the IPv6 rules", error);
        QString ignored;
        remove(ignored);
        return false;
    }
    return true;
}

bool Ipv6Guard::remove(QString& detail)
{
    if (!QFile::exists(QStringLiteral("/proc/net/if_inet6")))
        return true;
    const SocketPtr socket = connectedSocket(detail);
    if (!socket)
        return false;
    nl_cache* raw = nullptr;
    int error = rtnl_rule_alloc_cache(socket.get(), AF_INET6, &raw);
    if (error < 0) {
        detail = netlinkError("cannot read the IPv6 rules", error);
        return false;
    }
    const netlink::CachePtr cache(raw);
    for (nl_object* object = nl_cache_get_first(cache.get()); object != nullptr;
         object = nl_cache_get_next(object)) {
        auto* rule = reinterpret_cast<rtnl_rule*>(object);
        const uint32_t priority = rtnl_rule_get_prio(rule);
        if (priority != passPriority && priority != blockPriority)
            continue;
        const int deleted = rtnl_rule_delete(socket.get(), rule, 0);
        if (deleted < 0 && deleted != -NLE_OBJ_NOTFOUND) {
            error = deleted;
            detail = netlinkError("cannot remove an IPv6 rule", deleted);
        }
    }
    return error >= 0;
}

} // namespace tavero
