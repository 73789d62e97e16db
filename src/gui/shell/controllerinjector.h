#pragma once

#include "gui/shell/logincontroller.h"
#include "gui/shell/serverselectioncontroller.h"
#include "gui/shell/settingscontroller.h"
#include "gui/shell/statuscontroller.h"

#include <QObject>

class IViewManager;
namespace tavero {
class VpnManager;
}

// Owns the four page controllers and runs the start of the programme flow: update check, repair
// of the stored protocols, splash page, flag loading, then (onImageLoaded) automatic log-in and
// automatic connection. Also turns a forced log-out into a tray bubble and the login page.
class ControllerInjector : public QObject {
    Q_OBJECT
public:
    // Neither reference is owned; both outlive the injector.
    ControllerInjector(tavero::VpnManager& manager, IViewManager& viewManager);
    ~ControllerInjector() override;
    Q_DISABLE_COPY_MOVE(ControllerInjector)

    LoginController& loginController() { return m_loginController; }
    ServerSelectionController& serverController() { return m_serverController; }
    SettingsController& settingsController() { return m_settingsController; }
    StatusController& statusController() { return m_statusController; }

    // The first call after start-up; `isAdministrator` allows the update check. False when an
    // update is being installed and the programme is quitting.
    bool startProgramm(bool isAdministrator);

public slots:
    void onImageLoaded();

private slots:
    void onNeedLogout(const QString& reason);

private:
    tavero::VpnManager& m_manager;
    IViewManager& m_viewManager;
    LoginController m_loginController;
    ServerSelectionController m_serverController;
    SettingsController m_settingsController;
    StatusController m_statusController;
};
