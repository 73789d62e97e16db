#include "app/programassembly.h"

#include "api/serverapi.h"
#include "app/languagemaster.h"
#include "app/programlaunchchecker.h"
#include "gui/pages/loginwidget.h"
#include "gui/shell/controllerinjector.h"
#include "gui/shell/viewmanager.h"
#include "manager/vpnmanager.h"
#include "platform/iplatform.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QMessageBox>

namespace tavero {

namespace {
const QString firstRunMarkerName = QStringLiteral("fr.txt");
}

ProgramAssembly::ProgramAssembly()
    : ProgramAssembly(Options{})
{}

ProgramAssembly::ProgramAssembly(Options options)
    : m_options(std::move(options))
{}

ProgramAssembly::~ProgramAssembly()
{
    // Spelled out because the order is part of the contract: the view manager's pages hold the
    // controllers, the controllers the manager, the manager the service client.
    m_injector.reset();
    m_firstRunMarker.reset();
    m_viewManager.reset();
    m_languageMaster.reset();
    m_manager.reset();
    m_api.reset();
}

bool ProgramAssembly::assemble(bool isAdministrator)
{
    m_api = std::make_unique<ServerApi>();
    m_manager =
        std::make_unique<VpnManager>(*m_api, std::move(m_options.platform), m_options.chainOptions);
    m_languageMaster = std::make_unique<LanguageMaster>(m_manager->settings());
    m_languageMaster->initStartupLanguage();

    if (ProgramLaunchChecker::checkDlg(m_options.launchName, QStringLiteral("TAVERO")))
        return false;
    qInfo() << "Tavero is started";

    m_viewManager = std::make_unique<ViewManager>(*m_manager, *m_languageMaster);
    consumeFirstRunMarker();
    m_injector = std::make_shared<ControllerInjector>(*m_manager, *m_viewManager);
    m_viewManager->setControllerInjector(m_injector);

    if (!m_injector->startProgramm(isAdministrator))
        return false;
    // A quit asked for inside the nested waits of the start (a session log-off, say) ends no
    // event loop yet, so the exit sequence's own mark is read as well.
    if (QCoreApplication::closingDown() || m_manager->isProgrammTermination())
        return false;
    // Support (and the installation test) can tell from the log how far a start got.
    qInfo().noquote() << "Tavero is ready on the"
                      << (m_viewManager->currentWidget() == m_viewManager->loginPage()
                              ? "sign-in page"
                              : "status page");

    if (!isAdministrator) {
        ServerApi::setIsKillswitchAllowed(false);
        ServerApi::setIsOpenVpnAllowed(false);
        showNoAdministratorWarning();
    }
    return true;
}

void ProgramAssembly::consumeFirstRunMarker()
{
    const QDir directory(m_options.markerDirectory.isEmpty() ? QDir::currentPath()
                                                             : m_options.markerDirectory);
    m_firstRunMarker = std::make_unique<QFile>(directory.filePath(firstRunMarkerName));
    ISettings& settings = m_manager->settings();
    if (m_firstRunMarker->exists()) {
        settings.setIsFirstRun(true);
        if (!m_firstRunMarker->remove())
            qWarning() << "Could not remove the first-run marker" << m_firstRunMarker->fileName();
    } else {
        settings.setIsFirstRun(false);
    }
}

void ProgramAssembly::showNoAdministratorWarning()
{
    QMessageBox box(
        QMessageBox::Warning, QCoreApplication::translate("Application", "title.application_name"),
        QCoreApplication::translate("Application", "warning.running_without_admin_permissions"),
        QMessageBox::Ok);
    box.exec();
}

} // namespace tavero
