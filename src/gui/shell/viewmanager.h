#pragma once

#include "gui/pages/newversiondialog.h"
#include "gui/shell/iviewmanager.h"

#include <QLocale>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QVector>
#include <memory>

class ControllerInjector;
class SettingsDialog;
class ViewManagerUtils;
namespace Gui {
class LoginWidget;
class ServerSelectionWidget;
class SplashScreen;
class StatusWidget;
} // namespace Gui
namespace tavero {
class LanguageMaster;
class VpnManager;
} // namespace tavero

// Owns the main window, the pages and the dialogs, and decides which page the window shows. Every
// page change goes through it; it also answers the main window's tray entries, the settings
// dialog's requests (language, update check, kill switch) and the chain's give-up.
class ViewManager : public QObject, public IViewManager {
    Q_OBJECT
public:
    // Neither reference is owned; both outlive the view manager. Builds the window (not yet
    // shown), registers the Montserrat faces; the pages come with setControllerInjector().
    ViewManager(tavero::VpnManager& manager, tavero::LanguageMaster& languageMaster);
    ~ViewManager() override;
    Q_DISABLE_COPY_MOVE(ViewManager)

    // Creates the pages over the injector's controllers, wires them, gives the window its waiting
    // plate and runs the font pass. Called once.
    void setControllerInjector(std::shared_ptr<ControllerInjector> injector);

    IViewManagerUtils* utils() override;
    IBubleMessageProvider* bubleMessageProvider() override;
    bool checkUpdateDlg() override;
    void goToSplashScreen() override;
    void goToLogin() override;
    void goToStatus(bool afterLogin) override;
    void goToSettings() override;
    void goToInformation() override;
    void goToServerSelection() override;
    void show() override;
    void setPreloadFinished() override;
    MainWindow* window() override;

    // The page on screen (or the open dialog); what message boxes are shown over.
    QWidget* currentWidget() const;
    // Re-applies every page's texts and the tray menu in the current language.
    void reTranslateUI();

    Gui::LoginWidget* loginPage() const { return m_loginPage.get(); }
    Gui::StatusWidget* statusPage() const { return m_statusPage.get(); }
    Gui::ServerSelectionWidget* serverPage() const { return m_serverPage.get(); }
    SettingsDialog* settingsDialog() const { return m_settingsDialog.get(); }
    Gui::SplashScreen* splashScreen() const { return m_splashScreen.get(); }
    NewVersionDialog& updateDialog() { return m_updateDialog; }

    // The font pass: every page on Montserrat at its shown size, the settings dialog at 13 px.
    void correctFonts();
    // Collects `widget` and its widget descendants, parents first, with their point size × factor
    // rounded; the about widget, dialog button boxes and menus are skipped with their contents.
    static void correctFonts(QWidget* widget, double factor, QVector<QPair<QWidget*, int>>& out);
    double rescaleSize(int size) const;
    // Sets collected pages' widgets to their shown point size (sizes the layouts were not
    // designed with stay) in Montserrat; a dialog's widgets to 13 pixels in Montserrat.
    static void applyPageFonts(const QVector<QPair<QWidget*, int>>& widgets);
    static void applyDialogFonts(const QVector<QPair<QWidget*, int>>& widgets);
    // The client's Montserrat faces and its application-wide sheet (dialogs, message boxes,
    // scroll and progress bars follow the main window); the constructor installs both.
    static void installLook();

    // The title of the kill-switch box, in the current language.
    QString killSwitchTitle() const { return m_killSwitchTitle; }

private:
    void setCurrentWidget(QWidget* widget);
    void setWindowSize(int width, int height);
    void runSettingsDialog(bool informationTab);
    void translateKillSwitchTexts();
    void connectPages();

    void onCloseButtonClicked();
    void onConnectFromContextMenu();
    void onCheckNewVersion();
    void onKillSwitchStateChanged(int state);
    void onProtocolsExpired();
    void onLanguageApply(QLocale::Language language);

    tavero::VpnManager& m_manager;
    tavero::LanguageMaster& m_languageMaster;
    NewVersionDialog m_updateDialog;
    std::shared_ptr<ControllerInjector> m_injector;
    std::unique_ptr<ViewManagerUtils> m_utils;
    std::unique_ptr<MainWindow> m_mainWindow;
    std::unique_ptr<Gui::LoginWidget> m_loginPage;
    std::unique_ptr<Gui::StatusWidget> m_statusPage;
    std::unique_ptr<Gui::ServerSelectionWidget> m_serverPage;
    std::unique_ptr<SettingsDialog> m_settingsDialog;
    std::unique_ptr<Gui::SplashScreen> m_splashScreen;
    QString m_killSwitchTitle;
    QString m_killSwitchBody;
    QString m_killSwitchBodySecondTime;
    double m_fontScaleFactor = 1.0;
    QMap<int, double> m_fontSizes;
    bool m_firstStatusDisplay = true;
};
