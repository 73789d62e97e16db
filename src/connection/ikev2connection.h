#pragma once

#include "connection/iconnection.h"
#include "platform/iplatform.h"

namespace tavero {

class IKEv2Connection final : public IConnection {
public:
    explicit IKEv2Connection(IPlatform& platform);

    QString name() override;
    bool supports(const VpnServerInformation& server) override;
    OperationResult connect(const VpnServerInformation& server) override;
    OperationResult disconnect() override;
    bool canAsyncConnect() override;

private:
    IPlatform& m_platform;
};

} // namespace tavero
