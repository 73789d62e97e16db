#pragma once

#include "api/operationresult.h"
#include "platform/tunnelnetwork.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <functional>

namespace tavero {

// Points the system's name resolution at a tunnel's DNS servers and puts it back afterwards.
//
// With systemd-resolved on the system bus: the tunnel's link gets the DNS servers, its search
// domains and the routing domain "~.", and becomes the default route for look-ups, so every name
// goes through the tunnel; the settings die with the link, and a record names the link so that
// a device that outlived a crashed client (an IKEv2 one) is reverted too.
// Otherwise the resolver file (/etc/resolv.conf) is replaced by one that names only the tunnel's
// servers. Before it is touched, a record of what to put back is handed to the caller, who keeps
// it on disk; restore() puts the original back from that record (after a crash too), but only
// while the file still holds what this class wrote: a file another program has since rewritten
// is left to that program.
class TunnelResolver {
public:
    struct Options {
        QString resolvConfPath = QStringLiteral("/etc/resolv.conf");
        bool useResolved = false;
        QString busAddress; // the bus systemd-resolved is on; empty: the system bus
    };
    // systemd-resolved when it runs (unless TAVERO_RESOLV_CONF names the file to manage), else
    // the resolver file: TAVERO_RESOLV_CONF or /etc/resolv.conf.
    static Options systemOptions();

    explicit TunnelResolver(Options options);
    ~TunnelResolver();
    TunnelResolver(const TunnelResolver&) = delete;
    TunnelResolver& operator=(const TunnelResolver&) = delete;

    // `keepRecord` must store the record durably before anything is changed; when it fails,
    // nothing is changed. A network without DNS servers changes nothing.
    OperationResult apply(const TunnelNetwork& network, int interfaceIndex,
                          const std::function<bool(const QJsonObject&)>& keepRecord);
    // Undoes apply(); true when nothing is left to undo.
    bool release();
    // Puts back what a record names; true when the record needs nothing more.
    static bool restore(const QJsonObject& record);
    // The text written to the resolver file for `network`.
    static QByteArray fileText(const TunnelNetwork& network);

private:
    OperationResult applyThroughResolved(const TunnelNetwork& network, int interfaceIndex,
                                         const std::function<bool(const QJsonObject&)>& keepRecord);
    OperationResult applyToFile(const TunnelNetwork& network,
                                const std::function<bool(const QJsonObject&)>& keepRecord);

    Options m_options;
    QJsonObject m_record; // what apply() changed: the resolver file, or resolved's link
};

} // namespace tavero
