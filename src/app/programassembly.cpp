#include "app/programassembly.h"

#include "api/serverapi.h"
#include "app/languagemaster.h"
#include "app/programlaunchchecker.h"
#include "app/signalwatcher.h"
#include "connection/runtimedirectory.h"
#include "gui/pages/loginwidget.h"
#include "gui/shell/controllerinjector.h"
#include "gui/shell/viewmanager.h"
#include "manager/vpnmanager.h"
#include "platform/iplatform.h"
#include "platform/nativeplatform.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QThread>

namespace tavero {

namespace {
const QString firstRunMarkerName = QStringLiteral("fr.txt");
constexpr int exitPollMs = 25;
} // namespace

ProgramAssembly::ProgramAssembly()
    : ProgramAssembly(Options{})
{}

ProgramAssembly::ProgramAssembly(Options options)
    : m_options(std::move(options))
{
    m_exitTimer.setInterval(exitPollMs);
    QObject::connect(&m_exitTimer, &QTimer::timeout, [this] { tryOrderlyExit(); });
}

ProgramAssembly::~ProgramAssembly()
{
    // Spelled out because the order is part of the contract: the view manager's pages hold the
    // controllers, the controllers the manager, the manager the service client.
    m_exitTimer.stop();
    m_injector.reset();
    m_firstRunMarker.reset();
    m_viewManager.reset();
    m_languageMaster.reset();
    m_manager.reset();
    m_api.reset();
}

bool ProgramAssembly::assemble(bool isAdministrator)
{
    // First, so a stop request during the start is not lost.
    m_stopSignals = std::make_unique<SignalWatcher>();
    QObject::connect(m_stopSignals.get(), &SignalWatcher::stopRequested,
                     [this](int signalNumber) { requestOrderlyExit(signalNumber); });
    // An openvpn (and its configuration file) left by a copy that was killed would keep a tunnel
    // nobody controls beside the one this copy brings up.
    RuntimeDirectory::removeLeftovers();
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
    m_assembled = true;
    return !m_manager->isProgrammTermination();
}

void ProgramAssembly::requestOrderlyExit(int signalNumber)
{
    qInfo() << "Stop requested by signal" << signalNumber;
    if (!m_manager || !m_assembled) {
        // Inside the start: its waits and boxes end, and assemble() reports that the programme
        // must end; the destructor then unwinds what was built.
        if (m_manager)
            m_manager->turnOnIsProgrammTermination();
        QCoreApplication::quit();
        return;
    }
    m_manager->turnOnIsProgrammTermination();
    if (!m_exitTimer.isActive())
        m_exitTimer.start();
}

void ProgramAssembly::tryOrderlyExit()
{
    // Never underneath running code: not inside an attempt, a teardown or a service exchange.
    if (m_manager->connection().isBusy())
        return;
    if (QThread::currentThread()->loopLevel() > 1) {
        // A box waiting for an answer (the exit question, a warning) is answered with its
        // rejecting button; other nested waits end by themselves.
        if (QWidget* modal = QApplication::activeModalWidget())
            modal->close();
        return;
    }
    if (!m_manager->disconnect().isSuccess)
        return; // leaving with the tunnel up would leave the user unprotected; tried again
    m_exitTimer.stop();
    QCoreApplication::quit();
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
#ifdef Q_OS_WIN
    // The system's own box, as the other start-up questions of the platform are.
    NativePlatform::showWarningBox(
        QCoreApplication::translate("Application", "title.application_name"),
        QCoreApplication::translate("Application", "warning.running_without_admin_permissions"));
#else
    QMessageBox box(
        QMessageBox::Warning, QCoreApplication::translate("Application", "title.application_name"),
        QCoreApplication::translate("Application", "warning.running_without_admin_permissions"),
        QMessageBox::Ok);
    box.exec();
#endif
}

} // namespace tavero
