#include "gui/shell/logincontroller.h"

#include "gui/shell/iviewmanager.h"
#include "gui/shell/iviewmanagerutils.h"
#include "manager/vpnmanager.h"

#include <QDebug>

LoginController::LoginController(tavero::VpnManager& manager, IViewManager& viewManager)
    : m_manager(manager)
    , m_viewManager(viewManager)
{}

bool LoginController::login(const QString& email, const QString& password)
{
    const OperationResult result = m_manager.loginByEmail(email, password);
    if (!result.isSuccess) {
        m_viewManager.utils()->warning(tr("label.authorization"), result.message, QMessageBox::Ok,
                                       QMessageBox::NoButton);
        qDebug() << result.message;
        return false;
    }
    qDebug() << "Login success";
    m_viewManager.goToStatus(true);
    return true;
}
