#pragma once

#include <QString>

class IViewManager;

namespace tavero {
class VpnManager;
}

// Between the status page (and the tray) and the VPN manager: connection control, the change of
// server and the standard error box. Every failure ends in a modal box; nothing is retried here.
class StatusController {
public:
    StatusController(tavero::VpnManager& manager, IViewManager& viewManager);

    void showSettings();
    void showInformation();
    void goToServerSelection();

    // Called before the server page opens and before a switch to the next server: remembers the
    // current server and refreshes the server list.
    void changeServer();
    // Called after the server page closes and after a switch to the next server: reconnects when a
    // tunnel is up and the current server is no longer the remembered one.
    void serverChanged();

    // The entry of the status page, the tray and automatic connection: brings the network back
    // first when the kill switch has cut it; when that fails the chain is told of a break instead.
    void connect();
    // Connects without looking at the kill switch: tests the network, refreshes the account's VPN
    // credentials, connects; failures become error boxes.
    void forceConnect();
    void disconnect();

    // Warning box titled "TAVERO" with `text`; also logged as critical.
    void showErrorMessage(const QString& text);

    // The server name remembered by the last changeServer(); empty before the first.
    const QString& rememberedServerName() const { return m_rememberedServerName; }

private:
    void showBox(const QString& text);

    tavero::VpnManager& m_manager;
    IViewManager& m_viewManager;
    QString m_rememberedServerName;
};
