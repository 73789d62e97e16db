#include "gui/shell/mainwindow.h"

#include "gui/pages/abstractcontentpage.h"
#include "gui/pages/waitingplate.h"
#include "gui/shell/qttools.h"
#include "manager/vpnmanager.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDebug>
#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSessionManager>
#include <QTimer>

namespace {

constexpr int exitRetryMs = 100;

const char* const disconnectedIcon = ":/pictures/tray_icon/logo-disconnected.png";
const char* const connectingIcon = ":/pictures/tray_icon/logo-connecting.png";
const char* const connectedIcon = ":/pictures/tray_icon/logo-connected.png";

QString stateLine(const QString& state)
{
    return QStringLiteral("TAVERO - %1").arg(state);
}

std::optional<bool>& forcedTrayAvailable()
{
    static std::optional<bool> forced;
    return forced;
}

} // namespace

bool MainWindow::trayAvailable()
{
    return forcedTrayAvailable().value_or(QSystemTrayIcon::isSystemTrayAvailable());
}

void MainWindow::overrideTrayAvailable(std::optional<bool> available)
{
    forcedTrayAvailable() = available;
}

MainWindow::MainWindow(tavero::VpnManager& manager)
    : QMainWindow(nullptr)
    , m_trayIcon(this)
    , m_ui(std::make_unique<Ui::MainWindow>())
    , m_manager(manager)
{
    m_ui->setupUi(this);
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowCloseButtonHint |
                   Qt::WindowMinimizeButtonHint | Qt::MSWindowsFixedSizeDialogHint);
    setWindowTitle(QStringLiteral("TAVERO"));
    QFont windowFont = font();
    windowFont.setFamily(QStringLiteral("Montserrat"));
    setFont(windowFont);
    setStyleSheet(QStringLiteral("QWidget {background: #F1F4FB; border: transparent;} QLabel { "
                                 "font-family: Montserrat;}QMenu::item:selected {background: "
                                 "#4997d0;}"));
    setWindowIcon(QIcon(QString::fromLatin1(connectedIcon)));

    createTrayMenu();
    m_trayIcon.setIcon(QIcon(QString::fromLatin1(disconnectedIcon)));
    m_trayIcon.setToolTip(stateLine(QObject::tr("title.disconnected")));
    connect(&m_trayIcon, &QSystemTrayIcon::activated, this, &MainWindow::trayActivated);
    m_trayIcon.show();

    if (auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        connect(application, &QGuiApplication::commitDataRequest, this,
                &MainWindow::onCommitDataRequest, Qt::DirectConnection);
    }
}

MainWindow::~MainWindow()
{
    showInTaskbar();
    m_trayIcon.hide();
    setContent(nullptr);
    m_ui.reset();
}

void MainWindow::createTrayMenu()
{
    auto* menu = new QMenu(this);
    m_trayIcon.setContextMenu(menu);
    m_connectAction = addTrayAction("action.connect");
    connect(m_connectAction, &QAction::triggered, this, &MainWindow::connectFromContextMenuClicked);
    m_connectSeparator = menu->addSeparator();
    connect(addTrayAction("action.show_attachment"), &QAction::triggered, this,
            [this] { setWindowState(Qt::WindowNoState); });
    connect(addTrayAction("action.settings"), &QAction::triggered, this,
            &MainWindow::showSettingsClicked);
    menu->addSeparator();
    connect(addTrayAction("action.exit"), &QAction::triggered, this, &MainWindow::exitFromProgramm);
    connect(menu, &QMenu::aboutToShow, this, &MainWindow::updateConnectEntryText);
}

QAction* MainWindow::addTrayAction(const char* key)
{
    QAction* action = m_trayIcon.contextMenu()->addAction(tr(key));
    action->setData(QString::fromLatin1(key));
    return action;
}

void MainWindow::updateConnectEntryText()
{
    const bool connected = m_manager.connection().mode() == tavero::ConnectionChain::Connected;
    setConnectActionTitle(connected ? tr("action.disconnect") : tr("action.connect"));
}

void MainWindow::retranslateTrayMenu()
{
    const QList<QAction*> actions = m_trayIcon.contextMenu()->actions();
    for (QAction* action : actions) {
        if (action->isSeparator() || action->menu())
            continue;
        action->setText(tr(action->data().toString().toLatin1().constData()));
    }
    // The connect entry stores "action.connect"; while a tunnel is up it must keep saying
    // "Disconnect" in the new language.
    updateConnectEntryText();
}

QWidget* MainWindow::content() const
{
    return m_ui ? m_ui->stackedWidget->currentWidget() : nullptr;
}

void MainWindow::setContent(Gui::AbstractContentPage* page)
{
    while (m_ui && m_ui->stackedWidget->count() > 0)
        m_ui->stackedWidget->removeWidget(m_ui->stackedWidget->widget(0));
    QtTools::paintWidget(page, Qt::white);
    if (page && m_ui) {
        m_ui->stackedWidget->addWidget(page);
        connect(page, &Gui::AbstractContentPage::aboutToStartWaiting, this,
                &MainWindow::showWaitingPlate, Qt::UniqueConnection);
        connect(page, &Gui::AbstractContentPage::aboutToStopWaiting, this,
                &MainWindow::hideWaitingPlate, Qt::UniqueConnection);
        connect(page, &Gui::AbstractContentPage::activeWindowChanged, this,
                &MainWindow::activeWindowChanged, Qt::UniqueConnection);
        connect(page, &Gui::AbstractContentPage::messageBoxShowed, this,
                &MainWindow::messageBoxShowed, Qt::UniqueConnection);
    }
    emit topCenterColorChanged();
}

void MainWindow::setWaitingPlate(Gui::WaitingPlate* plate)
{
    delete m_waitingPlate;
    m_waitingPlate = plate;
    if (!plate)
        return;
    plate->setParent(this);
    plate->setGeometry(rect());
    connect(this, &MainWindow::sizeChanged, plate,
            [plate](const QSize& size) { plate->resize(size); });
    plate->hide();
}

void MainWindow::showWaitingPlate()
{
    if (m_waitingPlate) {
        m_waitingPlate->setGeometry(rect());
        m_waitingPlate->raise();
        m_waitingPlate->show();
    }
    emit topCenterColorChanged();
}

void MainWindow::hideWaitingPlate()
{
    if (m_waitingPlate)
        m_waitingPlate->hide();
    emit topCenterColorChanged();
}

void MainWindow::showBubbleMessage(const QString& text, QSystemTrayIcon::MessageIcon icon,
                                   int milliseconds)
{
    m_trayIcon.showMessage(QStringLiteral("TAVERO"), text, icon, milliseconds);
}

void MainWindow::setConnectActionVisibility(bool visible)
{
    if (m_connectAction)
        m_connectAction->setVisible(visible);
    if (m_connectSeparator)
        m_connectSeparator->setVisible(visible);
}

bool MainWindow::connectActionVisibility() const
{
    return m_connectAction && m_connectAction->isVisible();
}

void MainWindow::setConnectActionTitle(const QString& title)
{
    if (m_connectAction)
        m_connectAction->setText(title);
}

QString MainWindow::titleCountry() const
{
    return m_lastConnectedCountry.isEmpty() ? QString()
                                            : QStringLiteral(" (%1)").arg(m_lastConnectedCountry);
}

void MainWindow::showState(const char* iconPath, const QString& stateText, bool withCountry)
{
    m_trayIcon.setIcon(QIcon(QString::fromLatin1(iconPath)));
    m_trayIcon.setToolTip(stateLine(stateText));
    setWindowTitle(withCountry ? QStringLiteral("TAVERO%1 - %2").arg(titleCountry(), stateText)
                               : stateLine(stateText));
}

void MainWindow::onConnected(QString country)
{
    m_lastConnectedCountry = country;
    showState(connectedIcon, QObject::tr("title.connected"), true);
}

void MainWindow::onDisconnected()
{
    showState(disconnectedIcon, QObject::tr("title.disconnected"), true);
}

void MainWindow::onConnecting()
{
    showState(connectingIcon, QObject::tr("title.connecting"), false);
}

void MainWindow::setLastConnectedCountry(QString country)
{
    m_lastConnectedCountry = country;
}

void MainWindow::onPreloadFinished()
{
    qDebug() << "onPreloadFinished";
    m_preloadFinished = true;
}

void MainWindow::showInTaskbar()
{
    if (parentWidget() == nullptr)
        return;
    const bool wasVisible = isVisible();
    setParent(nullptr, windowFlags());
    if (wasVisible)
        show();
}

void MainWindow::hideFromTaskbar()
{
    if (parentWidget() == &m_hiddenParent)
        return;
    // A window owned by a never-shown window gets no taskbar button of its own; reparenting also
    // hides it, so the tray is the way back.
    setParent(&m_hiddenParent, windowFlags());
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    const Qt::WindowStates state = windowState();
    if (state & Qt::WindowMinimized) {
        // Without a tray the taskbar button is the only way back to a minimised window.
        if (trayAvailable() && m_trayIcon.isVisible())
            hideFromTaskbar();
    } else if (state & Qt::WindowMaximized) {
        setWindowState(state & ~Qt::WindowMaximized);
    } else if (state == Qt::WindowNoState || state == Qt::WindowActive) {
        showInTaskbar();
        show();
    }
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // The window never closes by itself: closing means leaving the programme, after asking.
    event->ignore();
    exitFromProgramm();
}

void MainWindow::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    emit sizeChanged(event->size(), event->oldSize());
}

void MainWindow::trayActivated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason != QSystemTrayIcon::DoubleClick && reason != QSystemTrayIcon::Trigger)
        return;
    setWindowState(Qt::WindowNoState);
    activateWindow();
}

void MainWindow::exitFromProgramm()
{
    if (!m_preloadFinished || m_exitInProgress)
        return;
    m_exitInProgress = true;
    if (!confirmExit()) {
        m_exitInProgress = false;
        return;
    }
    forceExitFromProgramm();
}

bool MainWindow::confirmExit()
{
    qDebug() << "Confirm Exit";
    QMessageBox box;
    box.setWindowTitle(QObject::tr("title.exit_confirmation"));
    box.setText(m_manager.isConnected() ? QObject::tr("warning.vpn_is_connected_confirm_exit")
                                        : QObject::tr("warning.confirm_exit"));
    box.setStandardButtons(QMessageBox::Ok);
    box.addButton(QObject::tr("action.cancel"), QMessageBox::RejectRole);
    box.exec();
    return box.clickedButton() == box.button(QMessageBox::Ok);
}

void MainWindow::forceExitFromProgramm()
{
    const OperationResult result = m_manager.disconnect();
    if (!result.isSuccess) {
        // Leaving with the tunnel up would leave the user unprotected without knowing it.
        QTimer::singleShot(exitRetryMs, this, &MainWindow::forceExitFromProgramm);
        return;
    }
    endExitProgramm();
}

void MainWindow::endExitProgramm()
{
    qDebug() << "Main window: exit programm!";
    m_exitInProgress = true;
    m_manager.turnOnIsProgrammTermination();
    QCoreApplication::quit();
}

void MainWindow::onCommitDataRequest(QSessionManager& manager)
{
    qDebug() << "Exit programm on commit data";
    manager.cancel();
    m_exitInProgress = true;
    forceExitFromProgramm();
}
