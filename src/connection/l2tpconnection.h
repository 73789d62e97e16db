#pragma once

#include "connection/iconnection.h"
#include "platform/iplatform.h"

namespace tavero {

class L2tpConnection final : public IConnection {
public:
    explicit L2tpConnection(IPlatform& platform);

    QString name() override;
    bool supports(const VpnServerInformation& server) override;
    OperationResult connect(const VpnServerInformation& server) override;
    OperationResult disconnect() override;
    bool canAsyncConnect() override;

private:
    IPlatform& m_platform;
};

} // namespace tavero
