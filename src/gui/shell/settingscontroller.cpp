#include "gui/shell/settingscontroller.h"

#include "api/protocoltype.h"
#include "gui/shell/iviewmanager.h"
#include "manager/utils.h"
#include "manager/vpnmanager.h"

SettingsController::SettingsController(tavero::VpnManager& manager, IViewManager& viewManager)
    : m_manager(manager)
    , m_viewManager(viewManager)
{}

void SettingsController::logOut()
{
    m_manager.settings().setToken(QString());
    m_viewManager.goToLogin();
}

void SettingsController::fixSettings()
{
    tavero::ISettings& settings = m_manager.settings();
    const QFlags<ProtocolType> stored = settings.protocolTypes();
    const QFlags<ProtocolType> usable = utils::usableProtocolTypes(stored);
    if (usable != stored)
        settings.setProtocolTypes(usable);
}
