#pragma once

#include "gui/shell/ibublemessageprovider.h"

#include <QMainWindow>
#include <QSystemTrayIcon>
#include <QWidget>
#include <memory>
#include <optional>

class QAction;
class QSessionManager;

namespace Ui {
class MainWindow;
}
namespace Gui {
class AbstractContentPage;
class WaitingPlate;
} // namespace Gui
namespace tavero {
class VpnManager;
}

// The application's only top-level window: one page at a time, the tray icon with its menu, the
// connection state in icon, tooltip and title, tray bubbles, the waiting plate, and the exit
// sequence (confirmation, disconnect until it succeeds, quit). Which page is shown is the view
// manager's decision.
class MainWindow : public QMainWindow, public IBubleMessageProvider {
    Q_OBJECT
public:
    // Whether a system tray shows the icon; tests force the answer (nullopt: ask the system).
    static bool trayAvailable();
    static void overrideTrayAvailable(std::optional<bool> available);

    explicit MainWindow(tavero::VpnManager& manager);
    ~MainWindow() override;

    // Replaces the shown page (the previous one is taken out, not deleted); null shows nothing.
    void setContent(Gui::AbstractContentPage* page);
    // Takes ownership of the plate; it covers the whole window while shown.
    void setWaitingPlate(Gui::WaitingPlate* plate);
    Gui::WaitingPlate* waitingPlate() const { return m_waitingPlate; }
    // The page the window shows; null before the first one.
    QWidget* content() const;

    void showBubbleMessage(const QString& text, QSystemTrayIcon::MessageIcon icon,
                           int milliseconds) override;

    // The tray menu's connect entry and the separator after it.
    void setConnectActionVisibility(bool visible);
    bool connectActionVisibility() const;
    void setConnectActionTitle(const QString& title);
    QAction* connectAction() const { return m_connectAction; }
    QSystemTrayIcon& trayIcon() { return m_trayIcon; }

    // Sets every tray entry's text again in the current language.
    void retranslateTrayMenu();

    bool isExitFromProgramProcessing() const { return m_exitInProgress; }
    bool isPreloadFinished() const { return m_preloadFinished; }
    void setAllowCloseProgrammOnCross(bool allow) { m_allowCloseOnCross = allow; }
    bool allowCloseProgrammOnCross() const { return m_allowCloseOnCross; }
    QString lastConnectedCountry() const { return m_lastConnectedCountry; }

    // Off the taskbar while minimised: the window is reparented to a hidden widget.
    void showInTaskbar();
    void hideFromTaskbar();

    // Asks for confirmation and, on yes, disconnects and quits. Ignored before the first page was
    // reached and while an exit is already in progress.
    void exitFromProgramm();

signals:
    void closeButtonClicked();
    void connectFromContextMenuClicked();
    void showSettingsClicked();
    void sizeChanged(const QSize& size, const QSize& oldSize);
    void topCenterColorChanged();
    void activeWindowChanged();
    void messageBoxShowed();

public slots:
    void showWaitingPlate();
    void hideWaitingPlate();
    void onConnected(QString country);
    void onDisconnected();
    void onConnecting();
    void onPreloadFinished();
    void setLastConnectedCountry(QString country);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private slots:
    void trayActivated(QSystemTrayIcon::ActivationReason reason);
    void forceExitFromProgramm();
    void onCommitDataRequest(QSessionManager& manager);

private:
    void createTrayMenu();
    QAction* addTrayAction(const char* key);
    void updateConnectEntryText();
    bool confirmExit();
    void endExitProgramm();
    void showState(const char* iconPath, const QString& stateText, bool withCountry);
    QString titleCountry() const;

    QWidget m_hiddenParent;
    bool m_allowCloseOnCross = true;
    QSystemTrayIcon m_trayIcon;
    std::unique_ptr<Ui::MainWindow> m_ui;
    Gui::WaitingPlate* m_waitingPlate = nullptr; // a child of the window
    QAction* m_connectAction = nullptr;
    QAction* m_connectSeparator = nullptr;
    tavero::VpnManager& m_manager;
    bool m_exitInProgress = false;
    bool m_preloadFinished = false;
    QString m_lastConnectedCountry;
};
