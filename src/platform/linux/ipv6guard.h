#pragma once

#include <QString>

namespace tavero {

// Keeps IPv6 off the physical links while a tunnel that carries only IPv4 is up: two groups of
// IPv6 policy rules, owned by the client through their priorities. The first sends link-local and
// multicast destinations (and the VPN server itself, when it is reached over IPv6) to the main
// table as usual; the second answers everything else with "unreachable", so no IPv6 packet leaves
// for the local network or the internet. Loopback stays usable (the local table comes first).
//
// The rules outlive the process; remove() takes away every rule with these priorities, so a start
// after a crash cleans up without knowing which rules were made.
class Ipv6Guard {
public:
    static constexpr unsigned passPriority = 10217;
    static constexpr unsigned blockPriority = 10218;

    // Adds the rules (after removing any left over); on failure removes what it added. A system
    // without IPv6 needs nothing and succeeds.
    static bool apply(const QString& serverAddress, QString& detail);
    // Removes every IPv6 rule at the two priorities; true when none is left.
    static bool remove(QString& detail);
};

} // namespace tavero
