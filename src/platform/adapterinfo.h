#pragma once

#include <QHostAddress>
#include <QList>

namespace tavero {

// A network adapter as the tunnel set-up sees it. A default value (index 0) means "not found".
struct AdapterInfo {
    quint32 interfaceIndex = 0;
    quint32 ipv6InterfaceIndex = 0;
    // Unicast addresses of both families, in the order the system lists them; never null.
    QList<QHostAddress> addresses;
};

} // namespace tavero
