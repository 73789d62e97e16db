#include "connection/l2tpconnection.h"

#include "connection/connectionchain.h"

namespace tavero {

L2tpConnection::L2tpConnection(IPlatform& platform)
    : m_platform(platform)
{}

QString L2tpConnection::name()
{
    return ConnectionChain::ProtocolNames.l2tp;
}
bool L2tpConnection::supports(const VpnServerInformation& server)
{
    return server.hasAccountData;
}
OperationResult L2tpConnection::connect(const VpnServerInformation& server)
{
    return m_platform.connectL2tp(server.host, server.vpnUsername, server.vpnPassword,
                                  server.sharedKey);
}
OperationResult L2tpConnection::disconnect()
{
    return m_platform.disconnect();
}
bool L2tpConnection::canAsyncConnect()
{
    return m_platform.isL2tpAsync();
}

} // namespace tavero
