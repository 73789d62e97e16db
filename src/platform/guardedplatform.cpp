#include "platform/guardedplatform.h"

#include "platform/guardedcall.h"
#include "platform/nativeplatform.h"

namespace tavero {

OperationResult GuardedPlatform::disconnect()
{
    return guardedCall("disconnect",
                       QT_TRANSLATE_NOOP("QObject", "warning.could_not_break_vpn_connection"),
                       [this] { return forceDisconnect(); });
}

OperationResult GuardedPlatform::connectPptp(const QString& host, const QString& user,
                                             const QString& password)
{
    return guardedCall("connectPptp",
                       QT_TRANSLATE_NOOP("QObject", "warning.could_not_connect_using_pptp"),
                       [&] { return forceConnectPptp(host, user, password); });
}

OperationResult GuardedPlatform::connectL2tp(const QString& host, const QString& user,
                                             const QString& password, const QString& preSharedKey)
{
    return guardedCall(
        "connectL2tp",
        QT_TRANSLATE_NOOP("QObject", "warning.unable_to_connect_using_L2TP_protocol"),
        [&] { return forceConnectL2tp(host, user, password, preSharedKey); });
}

OperationResult GuardedPlatform::connectIKEv2(const QString& host, const QString& user,
                                              const QString& password, bool withoutAdminRights)
{
    static const char* const refusal =
        QT_TRANSLATE_NOOP("QObject", "warning.unable_to_connect_using_IKEv2_protocol");
    // Carrying all traffic needs routes, and routes need rights.
    if (!withoutAdminRights && !NativePlatform::isRunningAsAdministrator())
        return OperationResult(QCoreApplication::translate("QObject", refusal));
    return guardedCall("connectIKEv2", refusal,
                       [&] { return forceConnectIKEv2(host, user, password, withoutAdminRights); });
}

OperationResult GuardedPlatform::turnOffInternet()
{
    return guardedCall("turnOffInternet",
                       QT_TRANSLATE_NOOP("QObject", "warning.internet_connection_failed"),
                       [this] { return forceTurnOffInternet(); });
}

OperationResult GuardedPlatform::turnOnInternet(bool& reenabled)
{
    return guardedCall("turnOnInternet",
                       QT_TRANSLATE_NOOP("QObject", "warning.internet_shutdown_failed"),
                       [&] { return forceTurnOnInternet(reenabled); });
}

bool GuardedPlatform::turnOnNetDevices()
{
    bool reenabled = false;
    bool returned = false;
    guardedCall("turnOnNetDevices",
                QT_TRANSLATE_NOOP("QObject", "warning.internet_shutdown_failed"), [&] {
                    const OperationResult result = forceTurnOnInternet(reenabled);
                    returned = true;
                    return result;
                });
    // A worker that threw may have set `reenabled` first; that switch-on did not happen.
    return returned && reenabled;
}

} // namespace tavero
