#pragma once

#include <QObject>

class IViewManager;

namespace tavero {
class VpnManager;
}

// Between the login page and the VPN manager: logs in and either shows the refusal or moves on to
// the status page.
class LoginController : public QObject {
    Q_OBJECT
public:
    LoginController(tavero::VpnManager& manager, IViewManager& viewManager);

    // Blocks while the service answers. On failure shows the message in an "Authorization" box
    // and stays on the page; on success goes to the status page. Returns the success flag.
    bool login(const QString& email, const QString& password);

private:
    tavero::VpnManager& m_manager;
    IViewManager& m_viewManager;
};
