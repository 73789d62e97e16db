#include "connection/ovpntcpconnection.h"

#include "connection/connectionchain.h"

namespace tavero {

OvpnTcpConnection::OvpnTcpConnection(OvpnConnection& driver)
    : m_driver(driver)
{}

QString OvpnTcpConnection::name()
{
    return ConnectionChain::ProtocolNames.ovpnTcp;
}
bool OvpnTcpConnection::supports(const VpnServerInformation& server)
{
    return server.hasOvpnConfig;
}
OperationResult OvpnTcpConnection::connect(const VpnServerInformation& server)
{
    return m_driver.connectTcp(server);
}
OperationResult OvpnTcpConnection::disconnect()
{
    return m_driver.disconnect();
}
bool OvpnTcpConnection::canAsyncConnect()
{
    return false;
}

} // namespace tavero
