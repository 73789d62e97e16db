#include "connection/pptpconnection.h"

#include "connection/connectionchain.h"

namespace tavero {

PptpConnection::PptpConnection(IPlatform& platform)
    : m_platform(platform)
{}

QString PptpConnection::name()
{
    return ConnectionChain::ProtocolNames.pptp;
}
bool PptpConnection::supports(const VpnServerInformation& server)
{
    return server.hasAccountData;
}
OperationResult PptpConnection::connect(const VpnServerInformation& server)
{
    return m_platform.connectPptp(server.host, server.vpnUsername, server.vpnPassword);
}
OperationResult PptpConnection::disconnect()
{
    return m_platform.disconnect();
}
bool PptpConnection::canAsyncConnect()
{
    return m_platform.isPptpAsync();
}

} // namespace tavero
