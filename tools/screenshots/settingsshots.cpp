#include "api/serverapi.h"
#include "app/languagemaster.h"
#include "gui/pages/settingsdialog.h"
#include "gui/shell/iviewmanager.h"
#include "gui/shell/settingscontroller.h"
#include "gui/shell/viewmanager.h"
#include "gui/shell/viewmanagerutils.h"
#include "manager/vpnmanager.h"
#include "shotregistry.h"

namespace tavero::screenshots {
namespace {

// Navigation that goes nowhere: nothing in a picture logs out or changes page.
class StillNavigation : public IViewManager {
public:
    IViewManagerUtils* utils() override { return &m_utils; }
    IBubleMessageProvider* bubleMessageProvider() override { return nullptr; }
    bool checkUpdateDlg() override { return false; }
    void goToSplashScreen() override {}
    void goToLogin() override {}
    void goToStatus(bool) override {}
    void goToSettings() override {}
    void goToInformation() override {}
    void goToServerSelection() override {}
    void show() override {}
    void setPreloadFinished() override {}
    MainWindow* window() override { return nullptr; }

private:
    ViewManagerUtils m_utils;
};

// What the dialog is made with. A child of the dialog, so it lives exactly as long. The service
// address is a closed loopback port: the account request fails at once and nothing leaves the
// machine; the dialog then shows the stored e-mail.
class SettingsShotContext : public QObject {
public:
    SettingsShotContext()
        : api(Endpoints{QStringLiteral("https://127.0.0.1:9"),
                        QStringLiteral("https://127.0.0.1:9/json"),
                        QStringLiteral("http://127.0.0.1:9/"), QString()},
              std::chrono::milliseconds(2000))
        , manager(api)
        , controller(manager, navigation)
        , languages(manager.settings())
    {}

    ServerApi api;
    VpnManager manager;
    StillNavigation navigation;
    SettingsController controller;
    LanguageMaster languages;
};

std::unique_ptr<QWidget> makeSettings(const QString& state)
{
    auto context = std::make_unique<SettingsShotContext>();
    ISettings& settings = context->manager.settings();
    settings.setEmail(QStringLiteral("alice@tavero.example"));
    settings.setAutoConnection(true);
    settings.setAutoLocation(true);
    settings.setKillSwitch(false);
    settings.setProtocolTypes(QFlags<ProtocolType>(protocols::allProtocols));
    // The language list shows the language the picture is taken in, as in the client.
    const int language = context->languages.getLanguageIndex(QLocale().language());
    if (language >= 0)
        settings.setSelectedLanguage(context->languages.getLanguageInfos().at(language).code);

    auto dialog =
        std::make_unique<SettingsDialog>(context->manager, context->controller, context->languages);
    context.release()->setParent(dialog.get());
    // The view manager's font pass for the dialog: 13 pixels of Montserrat everywhere.
    QVector<QPair<QWidget*, int>> widgets;
    ViewManager::correctFonts(dialog.get(), 1.0, widgets);
    ViewManager::applyDialogFonts(widgets);
    dialog->fillUp();
    if (state == QLatin1String("about"))
        dialog->selectInformationTab();
    else
        dialog->selectSettingsTab();
    return dialog;
}

const ShotRegistration registration(QStringLiteral("settings"),
                                    {QStringLiteral("common"), QStringLiteral("about")},
                                    &makeSettings);

} // namespace
} // namespace tavero::screenshots
