#include "connection/ikev2connection.h"

#include "connection/connectionchain.h"
#include "platform/nativeplatform.h"

namespace tavero {

IKEv2Connection::IKEv2Connection(IPlatform& platform)
    : m_platform(platform)
{}

QString IKEv2Connection::name()
{
    return ConnectionChain::ProtocolNames.ikev2;
}
bool IKEv2Connection::supports(const VpnServerInformation& server)
{
    return server.hasAccountData;
}
OperationResult IKEv2Connection::connect(const VpnServerInformation& server)
{
    // Without administrator rights the tunnel is dialled without the split default routes.
    const bool withoutAdminRights = !NativePlatform::isRunningAsAdministrator();
    return m_platform.connectIKEv2(server.host, server.vpnUsername, server.vpnPassword,
                                   withoutAdminRights);
}
OperationResult IKEv2Connection::disconnect()
{
    return m_platform.disconnect();
}
// The platform's dial blocks for the whole dial, so IKEv2 always runs on a worker thread.
bool IKEv2Connection::canAsyncConnect()
{
    return true;
}

} // namespace tavero
