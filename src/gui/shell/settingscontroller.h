#pragma once

class IViewManager;

namespace tavero {
class VpnManager;
}

// Between the settings dialog (and the start-up) and the VPN manager.
class SettingsController {
public:
    SettingsController(tavero::VpnManager& manager, IViewManager& viewManager);

    // Forgets the stored log-in token (the e-mail address stays) and shows the login page.
    void logOut();
    // Keeps the stored protocol choice to either exactly one protocol or all of them (automatic
    // choice): anything else, the empty set included, becomes all of them.
    void fixSettings();

private:
    tavero::VpnManager& m_manager;
    IViewManager& m_viewManager;
};
