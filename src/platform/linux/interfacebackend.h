#pragma once

#include "platform/linux/networkswitchbackend.h"

struct nl_sock;

namespace tavero {

// Switches network interfaces down and up over rtnetlink (libnl-route-3). Identifiers are
// interface names. The netlink socket is opened per pass in the calling thread, so the pass acts
// in that thread's network namespace.
//
// Setting a link down makes the kernel drop every route through it; the ones the kernel does not
// recreate by itself (static, boot, DHCP: all but kernel and router-advertisement routes of the
// main table) travel with the interface's entry (`restore`, kept on disk by the platform) and are
// added again when the interface comes back up, by this run or the next one after a crash.
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
    NetworkSwitchStatus switchOn(const QString& id, const QJsonArray& restore) override;

private:
    NetworkSwitchStatus setUp(const QString& interfaceName, bool up);
    void restoreRoutes(const QString& interfaceName, const QJsonArray& routes);

    nl_sock* m_socket = nullptr;
};

} // namespace tavero
