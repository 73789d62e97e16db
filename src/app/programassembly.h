#pragma once

#include "connection/connectionchain.h"

#include <QString>
#include <QTimer>
#include <memory>

class ControllerInjector;
class QFile;
class ViewManager;

namespace tavero {

class IPlatform;
class LanguageMaster;
class ServerApi;
class SignalWatcher;
class VpnManager;

// Builds the programme's object graph between the application object and the event loop, in a
// fixed order: service client, VPN manager, language, launch check, view manager, first-run
// marker, controllers, start of the page flow, and the restrictions for a user without
// administrator rights. Destroys it in reverse order. Kept out of main so it can be tested
// without an event loop of its own.
class ProgramAssembly {
public:
    struct Options {
        // Replaces the native platform (tests hand in a scripted one).
        std::unique_ptr<IPlatform> platform;
        ConnectionChain::Options chainOptions;
        // The single-instance marker's name; tests use their own so they never meet a running
        // client.
        QString launchName = QStringLiteral("tavero");
        // Where the installer leaves "fr.txt"; empty: the current working directory.
        QString markerDirectory;
    };

    ProgramAssembly();
    explicit ProgramAssembly(Options options);
    ~ProgramAssembly();
    ProgramAssembly(const ProgramAssembly&) = delete;
    ProgramAssembly& operator=(const ProgramAssembly&) = delete;

    // Builds everything and starts the page flow. False means the programme must end now with
    // exit code 0 (another copy runs, an update is being installed, or a quit was requested while
    // starting); what was built is kept until destruction.
    bool assemble(bool isAdministrator);

    ServerApi* serverApi() const { return m_api.get(); }
    VpnManager* vpnManager() const { return m_manager.get(); }
    LanguageMaster* languageMaster() const { return m_languageMaster.get(); }
    ViewManager* viewManager() const { return m_viewManager.get(); }
    ControllerInjector* controllerInjector() const { return m_injector.get(); }

    // The warning a user without administrator rights gets once the first page is shown.
    static void showNoAdministratorWarning();

    // SIGINT, SIGTERM or SIGHUP (the terminal or the desktop session ending): the programme ends
    // as through its exit, without the question: from the top-level event loop only, once no
    // attempt runs, the tunnel is disconnected (retried until that succeeds) and the event loop
    // quits, so the graph unwinds in order (openvpn stopped, the network restored, the launch
    // marker released). During the start it ends the start instead.
    void requestOrderlyExit(int signalNumber);

private:
    void consumeFirstRunMarker();
    void tryOrderlyExit();

    Options m_options;
    std::unique_ptr<SignalWatcher> m_stopSignals;
    QTimer m_exitTimer;
    bool m_assembled = false;
    // Declared in construction order; members are destroyed in reverse.
    std::unique_ptr<ServerApi> m_api;
    std::unique_ptr<VpnManager> m_manager;
    std::unique_ptr<LanguageMaster> m_languageMaster;
    std::unique_ptr<ViewManager> m_viewManager;
    std::unique_ptr<QFile> m_firstRunMarker;
    std::shared_ptr<ControllerInjector> m_injector;
};

} // namespace tavero
