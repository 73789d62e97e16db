#pragma once

#include "platform/linux/networkswitchbackend.h"

#include <memory>

struct nl_sock;

namespace tavero {

// Switches network interfaces down and up over rtnetlink (libnl-route-3). Identifiers are
// interface names. The netlink socket is opened per pass in the calling thread, so the pass acts
// in that thread's network namespace.
//
// Setting a link down makes the kernel drop every route through it; the ones the kernel does not
// recreate by itself (static, boot, DHCP: all but kernel and router-advertisement routes of the
// main table) are kept by the object and added again when the interface comes back up.
class InterfaceBackend : public NetworkSwitchBackend {
public:
    InterfaceBackend();
    ~InterfaceBackend() override;

    InterfaceBackend(const InterfaceBackend&) = delete;
    InterfaceBackend& operator=(const InterfaceBackend&) = delete;

    QString name() const override;
    NetworkSwitchStatus open() override;
    void close() override;
    NetworkSwitchStatus listSwitchedOn(QVector<NetworkConnection>& connections) override;
    NetworkSwitchStatus stateOf(const QString& id, State& state) override;
    NetworkSwitchStatus switchOff(const NetworkConnection& connection) override;
    NetworkSwitchStatus switchOn(const QString& id) override;

private:
    struct SavedRoutes;

    NetworkSwitchStatus setUp(const QString& interfaceName, bool up);
    void saveRoutes(const QString& interfaceName, int interfaceIndex);
    void restoreRoutes(const QString& interfaceName);

    nl_sock* m_socket = nullptr;
    std::unique_ptr<SavedRoutes> m_savedRoutes;
};

} // namespace tavero
