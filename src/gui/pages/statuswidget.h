#pragma once

#include "api/flagpicturesize.h"
#include "connection/connectionchain.h"
#include "gui/pages/abstractcontentpage.h"

#include <functional>
#include <memory>

class IBubleMessageProvider;
class QPixmap;
class ServerSelectionController;
class StatusController;

namespace Ui {
class StatusWidget;
}

namespace tavero {
class VpnManager;
}

namespace Gui {

// The main page of a signed-in user: the connection state (shield, text, protection badge), the
// public address with the country's flag and name, the current server, and connect or disconnect.
// It keeps no connection state of its own: every chain signal, fillUp() and re-translation ends in
// showState(), which reads everything from the VPN manager. Chain events also appear as tray
// bubbles, and the state is re-emitted for the tray and the window title.
class StatusWidget : public AbstractContentPage {
    Q_OBJECT

public:
    // None of the references is owned; all outlive the page.
    StatusWidget(tavero::VpnManager& manager, StatusController& statusController,
                 ServerSelectionController& serverController, IBubleMessageProvider& bubbles,
                 QWidget* parent = nullptr);
    ~StatusWidget() override;

    // Re-applies the form's texts in the current language, then the state texts.
    void reTranslateUI();
    // Brings the whole page in line with the VPN manager.
    void showState();
    // The tunnel is up (the chain's mode is Connected).
    bool isIconOn() const;
    void showCountryName();
    void showBigFlag();
    void showSmallFlag();
    // Fetches and decodes the flag of `code`; on success hands it to `show` and returns true.
    bool showFlag(const std::function<void(const QPixmap&)>& show, FlagPictureSize size,
                  const QString& code);

signals:
    void stateConnected(QString contry);
    void stateDisconnected();
    void stateConnecting();

public slots:
    void modeChanged();
    // Refreshes the public address, then shows the state.
    void fillUp();
    void onProtocolChanged();
    void onProtocolsExpired();
    void showWaiter();
    void hideWaiter();
    void onReestablishFinished(bool isSuccess);
    void onIpButtonHoverEntered();
    void onIpButtonHoverLeaved();
    void onNextServerButtonsPressed();
    void onNextServerButtonsReleased();
    // After the settings stored a new protocol choice: offers to reconnect with it when a tunnel
    // is up.
    void onSettedNewProtocol();

private slots:
    void settingsClick();
    void nextServerClick();
    void changeServerClick();
    void connectClick();
    void disconnectClick();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void applyButtonStyles();
    // Long addresses and country names are fitted to the page's width (smaller, then elided,
    // the whole text in the tool tip) whenever the text or the width changes.
    int contentRowWidth() const;
    void fitIpLine();
    void fitCountryName();
    void applyIpStyle();
    void showBubble(const QString& text, int milliseconds);

    tavero::VpnManager& m_manager;
    StatusController& m_statusController;
    ServerSelectionController& m_serverController;
    std::unique_ptr<Ui::StatusWidget> m_ui;
    IBubleMessageProvider& m_bubbles;
    bool m_changeServerClickRunning = false;
    bool m_nextServerClickRunning = false;
    QString m_ipText;
    QString m_countryName;
    int m_ipPixelSize = 24;
    bool m_ipUnderlined = false;
    tavero::ConnectionChain::Mode m_lastMode = tavero::ConnectionChain::Disconnected;
};

} // namespace Gui
