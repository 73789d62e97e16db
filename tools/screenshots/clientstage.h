#pragma once

#include "flagfileserverapi.h"
#include "gui/shell/logincontroller.h"
#include "gui/shell/serverselectioncontroller.h"
#include "gui/shell/statuscontroller.h"
#include "support/fakeviewmanager.h"

#include <memory>

class QWidget;

namespace tavero {
class VpnManager;
}

namespace tavero::screenshots {

// A signed-in client for the page pictures: a real VPN manager and controllers over a scripted
// service (a handful of countries, the development service's flags) and a scripted platform, so
// taking pictures touches neither the network nor this machine's settings.
class ClientStage {
public:
    enum class State { Disconnected, Connected };
    // Long: an IPv6 address, the longest country names and full servers as well.
    enum class Data { Usual, Long };

    explicit ClientStage(Data data = Data::Usual);
    ~ClientStage();
    ClientStage(const ClientStage&) = delete;
    ClientStage& operator=(const ClientStage&) = delete;

    // Logs in; with Connected also brings the scripted tunnel up. False when that failed.
    bool enter(State state);

    tavero::VpnManager& manager() { return *m_manager; }
    FlagFileServerApi& api() { return m_api; }
    test::FakeViewManager& viewManager() { return m_viewManager; }
    LoginController& loginController() { return *m_loginController; }
    StatusController& statusController() { return *m_statusController; }
    ServerSelectionController& serverController() { return *m_serverController; }

    // What the view manager does to the window and every page once: designed point sizes become
    // the sizes shown, in Montserrat.
    static void applyFontPass(QWidget* page);

private:
    FlagFileServerApi m_api;
    Data m_data;
    test::FakeViewManager m_viewManager;
    std::unique_ptr<tavero::VpnManager> m_manager;
    std::unique_ptr<LoginController> m_loginController;
    std::unique_ptr<StatusController> m_statusController;
    std::unique_ptr<ServerSelectionController> m_serverController;
};

} // namespace tavero::screenshots
