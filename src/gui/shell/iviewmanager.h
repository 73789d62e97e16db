#pragma once

class IBubleMessageProvider;
class IViewManagerUtils;
class MainWindow;

// Navigation as the controllers see it: which page the main window shows, plus the channels for
// message boxes and tray bubbles. Implemented by the view manager; controllers hold a reference.
class IViewManager {
public:
    virtual ~IViewManager() = default;

    // Message boxes and the wait cursor; never null.
    virtual IViewManagerUtils* utils() = 0;
    // Tray bubbles (the main window); never null once the window exists.
    virtual IBubleMessageProvider* bubleMessageProvider() = 0;
    // Offers an available update; true when an update is being installed and the programme must
    // quit.
    virtual bool checkUpdateDlg() = 0;
    virtual void goToSplashScreen() = 0;
    virtual void goToLogin() = 0;
    // The argument says whether the status page follows a log-in (true) or a return from the
    // server selection page (false).
    virtual void goToStatus(bool afterLogin) = 0;
    // The settings dialog, modally, over the current page; returns when it closes.
    virtual void goToSettings() = 0;
    // The settings dialog opened on its information tab, modally.
    virtual void goToInformation() = 0;
    virtual void goToServerSelection() = 0;
    // Shows, restores and activates the main window.
    virtual void show() = 0;
    // The start-up flow has reached its first real page.
    virtual void setPreloadFinished() = 0;
    virtual MainWindow* window() = 0;
};
