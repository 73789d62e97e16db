#include "connection/ovpnudpconnection.h"

#include "connection/connectionchain.h"

namespace tavero {

OvpnUdpConnection::OvpnUdpConnection(OvpnConnection& driver)
    : m_driver(driver)
{}

QString OvpnUdpConnection::name()
{
    return ConnectionChain::ProtocolNames.ovpnUdp;
}
bool OvpnUdpConnection::supports(const VpnServerInformation& server)
{
    return server.hasOvpnConfig;
}
OperationResult OvpnUdpConnection::connect(const VpnServerInformation& server)
{
    return m_driver.connectUdp(server);
}
OperationResult OvpnUdpConnection::disconnect()
{
    return m_driver.disconnect();
}
bool OvpnUdpConnection::canAsyncConnect()
{
    return false;
}

} // namespace tavero
