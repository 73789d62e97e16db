#include "gui/shell/viewmanager.h"

#include "api/iserverapi.h"
#include "app/languagemaster.h"
#include "gui/pages/aboutprogrammwindowswidget.h"
#include "gui/pages/loginwidget.h"
#include "gui/pages/serverselectionwidget.h"
#include "gui/pages/settingsdialog.h"
#include "gui/pages/splashscreen.h"
#include "gui/pages/statuswidget.h"
#include "gui/pages/waitingplate.h"
#include "gui/shell/controllerinjector.h"
#include "gui/shell/fontsizetable.h"
#include "gui/shell/mainwindow.h"
#include "gui/shell/viewmanagerutils.h"
#include "manager/vpnmanager.h"

#include <QApplication>
#include <QDebug>
#include <QDialogButtonBox>
#include <QFile>
#include <QFontDatabase>
#include <QMenu>

namespace {

constexpr int pageWidth = 360;
constexpr int pageHeight = 550;
constexpr int trayResultBubbleMs = 10000;
constexpr int settingsDialogPixelSize = 13;

// Regular is registered twice, as the faces always were; a second registration of the same file
// is harmless.
const char* const fontFiles[] = {
    ":/fonts/Montserrat/Montserrat-Regular.ttf",
    ":/fonts/Montserrat/Montserrat-Bold.ttf",
    ":/fonts/Montserrat/Montserrat-BoldItalic.ttf",
    ":/fonts/Montserrat/Montserrat-ExtraBold.ttf",
    ":/fonts/Montserrat/Montserrat-ExtraBoldItalic.ttf",
    ":/fonts/Montserrat/Montserrat-Italic.ttf",
    ":/fonts/Montserrat/Montserrat-Light.ttf",
    ":/fonts/Montserrat/Montserrat-LightItalic.ttf",
    ":/fonts/Montserrat/Montserrat-Regular.ttf",
    ":/fonts/Montserrat/Montserrat-SemiBold.ttf",
    ":/fonts/Montserrat/Montserrat-SemiBoldItalic.ttf",
};

const QString montserrat = QStringLiteral("Montserrat");

} // namespace

ViewManager::ViewManager(tavero::VpnManager& manager, tavero::LanguageMaster& languageMaster)
    : m_manager(manager)
    , m_languageMaster(languageMaster)
    , m_utils(std::make_unique<ViewManagerUtils>())
    , m_mainWindow(std::make_unique<MainWindow>(manager))
    , m_fontSizes(FontSizeTable::sizes())
{
    installLook();
    translateKillSwitchTexts();
    connect(m_mainWindow.get(), &MainWindow::closeButtonClicked, this,
            &ViewManager::onCloseButtonClicked);
    connect(m_mainWindow.get(), &MainWindow::connectFromContextMenuClicked, this,
            &ViewManager::onConnectFromContextMenu);
    connect(m_mainWindow.get(), &MainWindow::showSettingsClicked, this, &ViewManager::goToSettings);
}

ViewManager::~ViewManager()
{
    // The window must not point at a page that is about to go; the login page goes too, but
    // after the pages that may still be shown.
    if (m_loginPage)
        m_mainWindow->setContent(m_loginPage.get());
    m_splashScreen.reset();
    m_settingsDialog.reset();
    m_serverPage.reset();
    m_statusPage.reset();
    m_mainWindow->setContent(nullptr);
    m_loginPage.reset();
    m_mainWindow.reset();
    m_utils.reset();
    m_injector.reset();
}

void ViewManager::installLook()
{
    for (const char* file : fontFiles) {
        if (QFontDatabase::addApplicationFont(QString::fromLatin1(file)) < 0)
            qWarning() << "Could not register font" << file;
    }
    QFile sheet(QStringLiteral(":/style/dialogs.qss"));
    if (qApp && sheet.open(QIODevice::ReadOnly))
        qApp->setStyleSheet(QString::fromUtf8(sheet.readAll()));
}

void ViewManager::translateKillSwitchTexts()
{
    m_killSwitchTitle = QObject::tr("title.kill_switch_triggered");
    m_killSwitchBody = QObject::tr("body.kill_switch_triggered");
    m_killSwitchBodySecondTime = QObject::tr("body.kill_switch_triggered_second_time");
}

void ViewManager::setControllerInjector(std::shared_ptr<ControllerInjector> injector)
{
    m_injector = std::move(injector);
    m_loginPage = std::make_unique<Gui::LoginWidget>(m_manager, m_injector->loginController());
    m_statusPage = std::make_unique<Gui::StatusWidget>(
        m_manager, m_injector->statusController(), m_injector->serverController(), *m_mainWindow);
    m_serverPage =
        std::make_unique<Gui::ServerSelectionWidget>(m_manager, m_injector->serverController());
    m_settingsDialog = std::make_unique<SettingsDialog>(m_manager, m_injector->settingsController(),
                                                        m_languageMaster);
    m_splashScreen = std::make_unique<Gui::SplashScreen>();
    connectPages();
    m_mainWindow->setWaitingPlate(new Gui::WaitingPlate());
    correctFonts();
    m_loginPage->correctFontAfterScale();
}

void ViewManager::connectPages()
{
    SettingsDialog* dialog = m_settingsDialog.get();
    MainWindow* window = m_mainWindow.get();
    tavero::ConnectionChain& chain = m_manager.connection();

    connect(dialog, &SettingsDialog::onLanguageApplySignal, this, &ViewManager::onLanguageApply);
    connect(dialog, &SettingsDialog::checkNewVersionAppSignal, this,
            &ViewManager::onCheckNewVersion);
    connect(dialog, &SettingsDialog::killSwitchChangState, this,
            &ViewManager::onKillSwitchStateChanged);
    connect(&chain, &tavero::ConnectionChain::modeChanged, this, [this] {
        if (m_manager.connection().mode() == tavero::ConnectionChain::Connected)
            m_manager.setKillSwitchFlag(false);
    });
    connect(&m_manager.vpnServers(), &tavero::VpnServerSelector::serverWasChanged, this,
            [this] { m_manager.setKillSwitchFlag(false); });
    connect(&chain, &tavero::ConnectionChain::protocolsExpired, this,
            &ViewManager::onProtocolsExpired);
    connect(m_statusPage.get(), &Gui::StatusWidget::stateConnected, window,
            &MainWindow::onConnected);
    connect(m_statusPage.get(), &Gui::StatusWidget::stateDisconnected, window,
            &MainWindow::onDisconnected);
    connect(m_statusPage.get(), &Gui::StatusWidget::stateConnecting, window,
            &MainWindow::onConnecting);
    connect(dialog, &SettingsDialog::settedNewProtocol, m_statusPage.get(),
            &Gui::StatusWidget::onSettedNewProtocol, Qt::QueuedConnection);
}

IViewManagerUtils* ViewManager::utils()
{
    return m_utils.get();
}

IBubleMessageProvider* ViewManager::bubleMessageProvider()
{
    return m_mainWindow.get();
}

MainWindow* ViewManager::window()
{
    return m_mainWindow.get();
}

QWidget* ViewManager::currentWidget() const
{
    return m_utils->parentForMessages();
}

bool ViewManager::checkUpdateDlg()
{
    return m_updateDialog.checkUpdate();
}

void ViewManager::setCurrentWidget(QWidget* widget)
{
    m_mainWindow->setAllowCloseProgrammOnCross(widget != m_serverPage.get());
    const bool connected = m_manager.connection().mode() == tavero::ConnectionChain::Connected;
    const bool trayConnectVisible =
        widget != nullptr &&
        (widget == m_statusPage.get() || (widget == m_serverPage.get() && connected));
    m_mainWindow->setConnectActionVisibility(trayConnectVisible);
    m_utils->setParentForMessages(widget);
}

void ViewManager::setWindowSize(int width, int height)
{
    m_mainWindow->setMinimumSize(width, height);
    // The server list keeps whatever size the user gave the window.
    if (currentWidget() != m_serverPage.get())
        m_mainWindow->adjustSize();
}

void ViewManager::goToSplashScreen()
{
    setCurrentWidget(m_splashScreen.get());
    m_mainWindow->setContent(m_splashScreen.get());
    setWindowSize(pageWidth, pageHeight);
}

void ViewManager::goToLogin()
{
    setCurrentWidget(m_loginPage.get());
    m_mainWindow->setContent(m_loginPage.get());
    setWindowSize(pageWidth, pageHeight);
}

void ViewManager::goToStatus(bool /*afterLogin*/)
{
    QWidget* previous = currentWidget();
    m_statusPage->fillUp();
    setCurrentWidget(m_statusPage.get());
    m_mainWindow->setContent(m_statusPage.get());
    if (m_firstStatusDisplay) {
        m_firstStatusDisplay = false;
        m_mainWindow->setLastConnectedCountry(m_manager.getLastConnectedCountryName());
        m_mainWindow->onDisconnected();
    }
    if (previous == m_serverPage.get()) {
        m_statusPage->startWaiting();
        m_injector->statusController().serverChanged();
        m_statusPage->stopWaiting();
    }
    setWindowSize(pageWidth, pageHeight);
}

void ViewManager::goToServerSelection()
{
    m_serverPage->fillUp();
    setCurrentWidget(m_serverPage.get());
    m_mainWindow->setContent(m_serverPage.get());
    setWindowSize(pageWidth, 0);
}

void ViewManager::goToSettings()
{
    if (m_settingsDialog->isVisible())
        return;
    runSettingsDialog(false);
}

void ViewManager::goToInformation()
{
    runSettingsDialog(true);
}

void ViewManager::runSettingsDialog(bool informationTab)
{
    m_settingsDialog->fillUp();
    if (informationTab)
        m_settingsDialog->selectInformationTab();
    else
        m_settingsDialog->selectSettingsTab();
    setCurrentWidget(m_settingsDialog.get());
    m_settingsDialog->exec();
    // A log-out from the dialog, or one forced by the service while it was open, put another page
    // in the window: the tray entries and the boxes' parent follow the page really shown.
    setCurrentWidget(m_mainWindow->content());
}

void ViewManager::show()
{
    m_mainWindow->show();
    m_mainWindow->setWindowState(Qt::WindowNoState);
    m_mainWindow->activateWindow();
}

void ViewManager::setPreloadFinished()
{
    m_mainWindow->onPreloadFinished();
}

void ViewManager::reTranslateUI()
{
    m_loginPage->reTranslateUI();
    m_statusPage->reTranslateUI();
    m_settingsDialog->reTranslateUI();
    m_serverPage->reTranslateUI();
    m_mainWindow->retranslateTrayMenu();
    translateKillSwitchTexts();
}

void ViewManager::onLanguageApply(QLocale::Language language)
{
    m_languageMaster.changeLanguage(language);
    reTranslateUI();
}

void ViewManager::onCloseButtonClicked()
{
    if (currentWidget() == m_serverPage.get())
        m_injector->serverController().goBack();
}

void ViewManager::onConnectFromContextMenu()
{
    // Only from a page that offers it (never behind the login page), and never into an attempt
    // or teardown already running: that one keeps its waiting plate and reports by itself.
    if (!m_statusPage || !m_statusPage->isEnabled() || !m_mainWindow->connectActionVisibility() ||
        m_manager.connection().isBusy())
        return;
    m_mainWindow->showWaitingPlate();
    StatusController& status = m_injector->statusController();
    QString bubble;
    if (m_manager.connection().mode() == tavero::ConnectionChain::Connected) {
        status.disconnect();
        m_manager.udpateIpInformation();
        bubble = m_manager.isConnected() ? QObject::tr("warning.failed_to_disable_vpn_connection")
                                         : QObject::tr("warning.vpn_connection_is_disabled");
    } else {
        status.connect();
        m_manager.udpateIpInformation();
        bubble = m_manager.isConnected() ? QObject::tr("warning.vpn_connection_is_connected")
                                         : QObject::tr("warning.could_not_connect_to_vpn");
    }
    m_mainWindow->showBubbleMessage(bubble, QSystemTrayIcon::Information, trayResultBubbleMs);
    m_mainWindow->hideWaitingPlate();
}

void ViewManager::onCheckNewVersion()
{
    const LastVersionGettingResult latest = m_manager.getAPIService().receiveLastVersion();
    const int running = qApp->property("APPLICATION_VERSION_INT").toInt();
    if (latest.status == RequestResult::Ok && running < latest.versionInt && checkUpdateDlg())
        QCoreApplication::quit();
}

void ViewManager::onKillSwitchStateChanged(int state)
{
    if (state != 0 || !m_manager.killSwitcher().haveDisabledNetDevicesByKillSwitch())
        return;
    const QMessageBox::StandardButton answer = m_utils->warning(
        QStringLiteral("TAVERO"), QObject::tr("body.do_we_need_enable_internet_interfaces"),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::NoButton);
    // Yes comes back as Ok (the translated yes button).
    if (answer == QMessageBox::Ok || answer == QMessageBox::Yes)
        m_manager.killSwitcher().enableNetDevices();
}

void ViewManager::onProtocolsExpired()
{
    if (!m_manager.isKillSwitch()) {
        m_utils->warning(QString(),
                         QObject::tr("warning.connection_problems_check_internet_connection"),
                         QMessageBox::Ok, QMessageBox::NoButton);
    } else {
        show();
        m_utils->critical(m_killSwitchTitle,
                          m_manager.isKillSwitchWasLastTime() ? m_killSwitchBodySecondTime
                                                              : m_killSwitchBody,
                          QMessageBox::Ok, QMessageBox::NoButton);
        m_manager.setKillSwitchFlag(true);
    }
    qWarning() << "VPN connection problems!";
}

void ViewManager::correctFonts(QWidget* widget, double factor, QVector<QPair<QWidget*, int>>& out)
{
    if (!widget)
        return;
    out.append({widget, static_cast<int>(widget->font().pointSizeF() * factor + 0.5)});
    const QObjectList children = widget->children();
    for (QObject* child : children) {
        auto* childWidget = qobject_cast<QWidget*>(child);
        if (!childWidget || qobject_cast<AboutProgrammWindowsWidget*>(childWidget) ||
            qobject_cast<QDialogButtonBox*>(childWidget) || qobject_cast<QMenu*>(childWidget))
            continue;
        correctFonts(childWidget, factor, out);
    }
}

double ViewManager::rescaleSize(int size) const
{
    return FontSizeTable::rescaleSize(m_fontSizes, size);
}

void ViewManager::correctFonts()
{
    QVector<QPair<QWidget*, int>> pages;
    correctFonts(m_mainWindow.get(), m_fontScaleFactor, pages);
    correctFonts(m_loginPage.get(), m_fontScaleFactor, pages);
    correctFonts(m_serverPage.get(), m_fontScaleFactor, pages);
    correctFonts(m_statusPage.get(), m_fontScaleFactor, pages);
    correctFonts(&m_updateDialog, m_fontScaleFactor, pages);
    correctFonts(m_splashScreen.get(), m_fontScaleFactor, pages);
    QVector<QPair<QWidget*, int>> dialog;
    correctFonts(m_settingsDialog.get(), m_fontScaleFactor, dialog);

    applyPageFonts(pages);
    applyDialogFonts(dialog);
}

void ViewManager::applyPageFonts(const QVector<QPair<QWidget*, int>>& widgets)
{
    const QMap<int, double> sizes = FontSizeTable::sizes();
    for (const auto& entry : widgets) {
        QFont font = entry.first->font();
        // A size the layouts were not designed with (a font given in pixels reads as -1) keeps
        // its size rather than shrinking to one point.
        if (sizes.contains(entry.second))
            font.setPointSize(static_cast<int>(FontSizeTable::rescaleSize(sizes, entry.second)));
        font.setFamily(montserrat);
        entry.first->setFont(font);
    }
}

void ViewManager::applyDialogFonts(const QVector<QPair<QWidget*, int>>& widgets)
{
    for (const auto& entry : widgets) {
        QFont font = entry.first->font();
        font.setPixelSize(settingsDialogPixelSize);
        font.setFamily(montserrat);
        entry.first->setFont(font);
    }
}
