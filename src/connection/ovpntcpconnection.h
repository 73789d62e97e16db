#pragma once

#include "connection/iconnection.h"
#include "connection/ovpnconnection.h"

namespace tavero {

class OvpnTcpConnection final : public IConnection {
public:
    explicit OvpnTcpConnection(OvpnConnection& driver);

    QString name() override;
    bool supports(const VpnServerInformation& server) override;
    OperationResult connect(const VpnServerInformation& server) override;
    OperationResult disconnect() override;
    bool canAsyncConnect() override;

private:
    OvpnConnection& m_driver;
};

} // namespace tavero
