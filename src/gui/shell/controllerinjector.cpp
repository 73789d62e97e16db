#include "gui/shell/controllerinjector.h"

#include "api/logoutbroadcaster.h"
#include "gui/shell/ibublemessageprovider.h"
#include "gui/shell/iviewmanager.h"
#include "gui/shell/mainwindow.h"
#include "manager/vpnmanager.h"

#include <QCoreApplication>
#include <QDebug>

namespace {
constexpr int logoutBubbleMs = 10000;
}

ControllerInjector::ControllerInjector(tavero::VpnManager& manager, IViewManager& viewManager)
    : m_manager(manager)
    , m_viewManager(viewManager)
    , m_loginController(manager, viewManager)
    , m_serverController(manager, viewManager)
    , m_settingsController(manager, viewManager)
    , m_statusController(manager, viewManager)
{
    // Queued: the log-out is raised in the middle of a service exchange, and the page must not
    // change under the code that is still waiting for that exchange.
    connect(&manager.logoutBroadcaster(), &LogoutBroadcaster::needLogout, this,
            &ControllerInjector::onNeedLogout, Qt::QueuedConnection);
    connect(&manager, &tavero::VpnManager::imageLoadingFinished, this,
            &ControllerInjector::onImageLoaded);
}

ControllerInjector::~ControllerInjector() = default;

bool ControllerInjector::startProgramm(bool isAdministrator)
{
    if (isAdministrator && m_viewManager.checkUpdateDlg()) {
        QCoreApplication::quit();
        return false;
    }
    m_settingsController.fixSettings();
    m_viewManager.goToSplashScreen();
    m_viewManager.show();
    m_manager.startImagesLoading();
    return true;
}

void ControllerInjector::onImageLoaded()
{
    MainWindow* window = m_viewManager.window();
    if (window && window->isExitFromProgramProcessing()) {
        qDebug() << "Program is exiting, do not login";
        return;
    }
    if (!m_manager.tryAutoLoginOnRestart().isSuccess) {
        m_viewManager.goToLogin();
        m_viewManager.show();
    } else {
        m_viewManager.goToStatus(true);
        m_viewManager.show();
        tavero::ISettings& settings = m_manager.settings();
        if (!settings.isFirstRun() && settings.isAutoConnection()) {
            if (window)
                window->showWaitingPlate();
            m_statusController.connect();
            if (window)
                window->hideWaitingPlate();
        }
    }
    m_viewManager.setPreloadFinished();
}

void ControllerInjector::onNeedLogout(const QString& reason)
{
    m_viewManager.bubleMessageProvider()->showBubbleMessage(reason, QSystemTrayIcon::Information,
                                                            logoutBubbleMs);
    m_viewManager.goToLogin();
}
