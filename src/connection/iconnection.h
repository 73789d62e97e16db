#pragma once

#include "api/operationresult.h"
#include "api/vpnserverinformation.h"

#include <QString>

namespace tavero {

// One protocol as the connection chain sees it. The chain owns the adapters as plain members and
// never deletes through this interface.
class IConnection {
public:
    virtual QString name() = 0;
    // The server record carries what this protocol needs.
    virtual bool supports(const VpnServerInformation& server) = 0;
    virtual OperationResult connect(const VpnServerInformation& server) = 0;
    virtual OperationResult disconnect() = 0;
    // connect() blocks and may run on a worker thread.
    virtual bool canAsyncConnect() = 0;

protected:
    ~IConnection() = default;
};

} // namespace tavero
