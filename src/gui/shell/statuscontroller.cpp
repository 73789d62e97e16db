#include "gui/shell/statuscontroller.h"

#include "connection/connectionchain.h"
#include "connection/connectionkeeper.h"
#include "gui/shell/iviewmanager.h"
#include "gui/shell/iviewmanagerutils.h"
#include "manager/vpnmanager.h"

#include <QCoreApplication>
#include <QDebug>

namespace {
const QString boxTitle = QStringLiteral("TAVERO"); // the product name, never translated
}

StatusController::StatusController(tavero::VpnManager& manager, IViewManager& viewManager)
    : m_manager(manager)
    , m_viewManager(viewManager)
{}

void StatusController::showSettings()
{
    m_viewManager.goToSettings();
}

void StatusController::showInformation()
{
    m_viewManager.goToInformation();
}

void StatusController::goToServerSelection()
{
    m_viewManager.goToServerSelection();
}

void StatusController::changeServer()
{
    tavero::VpnServerSelector& selector = m_manager.vpnServers();
    m_rememberedServerName = selector.currServer().name;
    const OperationResult result = selector.receiveServerListInfo();
    if (!result.isSuccess) {
        showBox(result.message);
        qCritical() << result.message;
    }
}

void StatusController::serverChanged()
{
    const QString current = m_manager.vpnServers().currServer().name;
    if (current != m_rememberedServerName &&
        m_manager.connection().mode() == tavero::ConnectionChain::Connected) {
        disconnect();
        connect();
    }
}

void StatusController::connect()
{
    if (!m_manager.killSwitchWasDisconnectingTheInternet()) {
        qDebug() << "no disabled connections";
        forceConnect();
        return;
    }
    if (m_manager.reestablishInternetConnection()) {
        qDebug() << "reestablishInternetConnection << true";
        forceConnect();
        return;
    }
    qDebug() << "reestablishInternetConnection << false";
    // The network did not come back: let the chain judge the address and re-establish or give
    // up, rather than starting an attempt that cannot succeed.
    m_manager.connection().onBreakDetected(tavero::ConnectionKeeper::NoNetwork);
}

void StatusController::forceConnect()
{
    if (!m_manager.isThereInternet()) {
        showErrorMessage(QCoreApplication::translate("QObject", "warning.network_unavailable"));
        return;
    }
    m_manager.receiveAccountInfo();
    const OperationResult result = m_manager.connect();
    if (result.isSuccess)
        return;
    if (result.code == OperationResult::NoInternet && m_manager.isKillSwitchWasLastTime())
        showErrorMessage(
            QCoreApplication::translate("QObject", "warning.you_should_to_change_server"));
    else
        showErrorMessage(result.message);
}

void StatusController::disconnect()
{
    const OperationResult result = m_manager.disconnect();
    if (!result.isSuccess) {
        showBox(result.message);
        qDebug() << result.message;
    }
}

void StatusController::showErrorMessage(const QString& text)
{
    showBox(text);
    qCritical() << text;
}

void StatusController::showBox(const QString& text)
{
    m_viewManager.utils()->warning(boxTitle, text, QMessageBox::Ok, QMessageBox::NoButton);
}
