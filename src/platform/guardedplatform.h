#pragma once

#include "platform/iplatform.h"

namespace tavero {

// The public operations both systems' platforms share. Each runs the system's unguarded worker of
// the same name with "force" and turns whatever that worker throws into a failed result carrying
// the operation's usual message, so no exception leaves the platform. A connect that must carry
// all traffic (IKEv2 with routes) is refused up front without administrator rights.
class GuardedPlatform : public IPlatform {
public:
    OperationResult disconnect() override;
    OperationResult connectPptp(const QString& host, const QString& user,
                                const QString& password) override;
    OperationResult connectL2tp(const QString& host, const QString& user, const QString& password,
                                const QString& preSharedKey) override;
    OperationResult connectIKEv2(const QString& host, const QString& user, const QString& password,
                                 bool withoutAdminRights) override;
    OperationResult turnOffInternet() override;
    OperationResult turnOnInternet(bool& reenabled) override;
    bool turnOnNetDevices() override;

protected:
    // The unguarded workers. They report ordinary failures in their result; the wrappers above
    // catch whatever they throw.
    virtual OperationResult forceDisconnect() = 0;
    virtual OperationResult forceConnectPptp(const QString& host, const QString& user,
                                             const QString& password) = 0;
    virtual OperationResult forceConnectL2tp(const QString& host, const QString& user,
                                             const QString& password,
                                             const QString& preSharedKey) = 0;
    virtual OperationResult forceConnectIKEv2(const QString& host, const QString& user,
                                              const QString& password, bool withoutAdminRights) = 0;
    virtual OperationResult forceTurnOffInternet() = 0;
    virtual OperationResult forceTurnOnInternet(bool& reenabled) = 0;
};

} // namespace tavero
