#include "gui/pages/statuswidget.h"

#include "gui/shell/colors.h"
#include "gui/shell/ibublemessageprovider.h"
#include "gui/shell/qttools.h"
#include "gui/shell/serverselectioncontroller.h"
#include "gui/shell/statuscontroller.h"
#include "manager/utils.h"
#include "manager/vpnmanager.h"
#include "platform/nativeplatform.h"
#include "ui_statuswidget.h"

#include <QCoreApplication>
#include <QDebug>
#include <QGraphicsDropShadowEffect>
#include <QImage>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>

namespace Gui {

namespace {

const char* const buttonFontWeight = "500";
constexpr int buttonTextPadding = 36;

const char* const changeServerStyle =
    "QPushButton {background: #FFFFFF;border-radius: 28px;margin: 10px;font-style: "
    "normal;font-weight: %1;font-size: 18px;}";
const char* const connectStyle =
    "QPushButton {background: #91C51B;border-radius: 28px;font-weight: %1;font-size: "
    "18px;font-family: Montserrat;}QPushButton:hover {background: #A9DA3A;}";
const char* const disconnectStyle =
    "QPushButton {background: #FB1B43;border-radius: 28px;font-weight: %1;font-size: "
    "18px;font-family: Montserrat;}QPushButton:hover {background: #FF5573;}";

// %1: the address's pixel size, 24 unless a long address (IPv6) needs less to fit the row.
const char* const ipUnderlinedStyle =
    "QPushButton {color: rgb(39, 60, 79);background-color: transparent;font-family: "
    "Montserrat;font-style: normal;font-weight: 500;font-size: %1px;line-height: 29px;text-align: "
    "center;text-decoration: underline;}QPushButton: disabled {color: rgb(39, 60, 79);}";
const char* const ipPlainStyle =
    "QPushButton {color: rgb(39, 60, 79);background-color: transparent;font-family: "
    "Montserrat;font-style: normal;font-weight: 500;font-size: %1px;line-height: 29px;text-align: "
    "center;}QPushButton: disabled {color: rgb(39, 60, 79);}";
constexpr int ipPixelSize = 24;
constexpr int ipSmallestPixelSize = 14;
// What a flat push button keeps around its text.
constexpr int ipButtonTextMargin = 12;

// The main window's sheet makes every border transparent; the frame names its colour itself.
const char* const protectedBadgeStyle = "QWidget {color: #91C51B;border-radius: 2px;} "
                                        "#isProtectedBackground {border: 1px solid #91C51B;}";
const char* const unprotectedBadgeStyle = "QWidget {color: #FB1B43;border-radius: 2px;} "
                                          "#isProtectedBackground {border: 1px solid #FB1B43;}";

QFont mediumFont(QFont font, int pixels)
{
    font.setFamily(QStringLiteral("Montserrat"));
    font.setWeight(QFont::Medium);
    font.setPixelSize(pixels);
    return font;
}

constexpr int protocolChangedBubbleMs = 10000;
constexpr int chainProblemBubbleMs = 60000;

// Texts shared with other parts of the client live in the "QObject" context of the catalogues.
QString shared(const char* key)
{
    return QCoreApplication::translate("QObject", key);
}

// A modal box with no parent offering an accepting and a rejecting button, no default; true only
// when the accepting one was clicked (closing the box counts as rejecting).
bool ask(QMessageBox::Icon icon, const QString& text, const QString& accept, const QString& reject)
{
    QMessageBox box(icon, shared("TAVERO"), text);
    QPushButton* acceptButton = box.addButton(accept, QMessageBox::AcceptRole);
    QPushButton* rejectButton = box.addButton(reject, QMessageBox::RejectRole);
    box.setEscapeButton(rejectButton);
    box.exec();
    return box.clickedButton() == acceptButton;
}

} // namespace

StatusWidget::StatusWidget(tavero::VpnManager& manager, StatusController& statusController,
                           ServerSelectionController& serverController,
                           IBubleMessageProvider& bubbles, QWidget* parent)
    : AbstractContentPage(parent)
    , m_manager(manager)
    , m_statusController(statusController)
    , m_serverController(serverController)
    , m_ui(std::make_unique<Ui::StatusWidget>())
    , m_bubbles(bubbles)
{
    m_ui->setupUi(this);
    QFont pageFont = font();
    pageFont.setFamily(QStringLiteral("Montserrat"));
    setFont(pageFont);

    m_ui->topBackground->setColor(QColor(Colors::white));
    m_ui->bottomBackground->setColor(QColor(Colors::bottomBandGradient));
    m_ui->bottomBackground->setGradient();
    QtTools::setSemiboldFont(m_ui->labelStatusCaption);
    QtTools::setSemiboldFont(m_ui->labelIsProtected);
    QtTools::setSemiboldFont(m_ui->pushButtonConnect);
    QtTools::setSemiboldFont(m_ui->pushButtonDisconnect);
    applyButtonStyles();

    auto* shadow = new QGraphicsDropShadowEffect(m_ui->pushButtonChangeServer);
    shadow->setColor(QColor(0, 0, 0, 25));
    shadow->setOffset(0, 0);
    shadow->setBlurRadius(10);
    m_ui->pushButtonChangeServer->setGraphicsEffect(shadow);

    m_ui->contentWidget->hide();
    m_ui->contentWidget->installEventFilter(this);
    m_ui->progressWidget->hide();
    m_ui->iconGuarded->hide();

    tavero::ConnectionChain& chain = m_manager.connection();
    connect(&chain, &tavero::ConnectionChain::modeChanged, this, &StatusWidget::modeChanged);
    connect(&chain, &tavero::ConnectionChain::protocolChanged, this,
            &StatusWidget::onProtocolChanged);
    connect(&chain, &tavero::ConnectionChain::protocolsExpired, this,
            &StatusWidget::onProtocolsExpired);
    connect(&chain, &tavero::ConnectionChain::reestablishStarted, this, &StatusWidget::showWaiter);
    connect(&chain, &tavero::ConnectionChain::reestablishFinished, this, &StatusWidget::hideWaiter);
    connect(&chain, &tavero::ConnectionChain::reestablishFinished, this,
            &StatusWidget::onReestablishFinished);

    for (HoverPushButton* button : {m_ui->pushButtonIp, m_ui->pushButtonNextServer}) {
        connect(button, &HoverPushButton::hoverEntered, this,
                &StatusWidget::onIpButtonHoverEntered);
        connect(button, &HoverPushButton::hoverLeaved, this, &StatusWidget::onIpButtonHoverLeaved);
        connect(button, &QPushButton::clicked, this, &StatusWidget::nextServerClick);
        connect(button, &QPushButton::pressed, this, &StatusWidget::onNextServerButtonsPressed);
        connect(button, &QPushButton::released, this, &StatusWidget::onNextServerButtonsReleased);
    }
    connect(m_ui->pushButtonSettings, &QPushButton::clicked, this, &StatusWidget::settingsClick);
    connect(m_ui->pushButtonChangeServer, &QPushButton::clicked, this,
            &StatusWidget::changeServerClick);
    connect(m_ui->pushButtonConnect, &QPushButton::clicked, this, &StatusWidget::connectClick);
    connect(m_ui->pushButtonDisconnect, &QPushButton::clicked, this,
            &StatusWidget::disconnectClick);
}

StatusWidget::~StatusWidget() = default;

void StatusWidget::applyButtonStyles()
{
    const QString weight = QLatin1String(buttonFontWeight);
    m_ui->pushButtonChangeServer->setStyleSheet(QString::fromLatin1(changeServerStyle).arg(weight));
    m_ui->pushButtonConnect->setStyleSheet(QString::fromLatin1(connectStyle).arg(weight));
    m_ui->pushButtonDisconnect->setStyleSheet(QString::fromLatin1(disconnectStyle).arg(weight));
    // Their sheets name no text colour: white, as on every coloured button, through the palette.
    for (QPushButton* button : {m_ui->pushButtonConnect, m_ui->pushButtonDisconnect}) {
        QPalette palette = button->palette();
        palette.setColor(QPalette::ButtonText, QColor(Colors::white));
        button->setPalette(palette);
    }
    QtTools::setButtonTextPadding(m_ui->pushButtonConnect, buttonTextPadding);
    QtTools::setButtonTextPadding(m_ui->pushButtonDisconnect, buttonTextPadding);
}

void StatusWidget::reTranslateUI()
{
    m_ui->retranslateUi(this);
    // The buttons' minimum widths follow their texts.
    QtTools::setButtonTextPadding(m_ui->pushButtonConnect, buttonTextPadding);
    QtTools::setButtonTextPadding(m_ui->pushButtonDisconnect, buttonTextPadding);
    showState();
}

bool StatusWidget::isIconOn() const
{
    return m_manager.connection().mode() == tavero::ConnectionChain::Connected;
}

void StatusWidget::modeChanged()
{
    fillUp();
    m_lastMode = m_manager.connection().mode();
}

void StatusWidget::fillUp()
{
    m_manager.udpateIpInformation();
    showState();
}

void StatusWidget::showState()
{
    tavero::ConnectionChain& chain = m_manager.connection();
    const tavero::ConnectionChain::Mode mode = chain.mode();
    const bool connected = mode == tavero::ConnectionChain::Connected;

    if (mode == tavero::ConnectionChain::Connecting) {
        emit stateConnecting();
    } else {
        if (connected)
            emit stateConnected(m_manager.getLastConnectedCountryName());
        else
            emit stateDisconnected();
        m_ui->progressWidget->hide();
        m_ui->contentWidget->show();
    }

    m_ui->iconGuarded->setVisible(connected);
    m_ui->iconNoGuarded->setVisible(!connected);

    const bool noServers = m_manager.vpnServers().servers().serversByCountry.isEmpty();
    if (noServers) {
        m_ui->pushButtonConnect->hide();
        m_ui->pushButtonDisconnect->hide();
        m_ui->pushButtonNextServer->hide();
        m_ui->pushButtonIp->setEnabled(false);
    } else if (connected) {
        m_ui->pushButtonConnect->hide();
        m_ui->pushButtonDisconnect->show();
        const bool multiserver = m_serverController.isMultiserverCountry();
        m_ui->pushButtonNextServer->setVisible(multiserver);
        m_ui->pushButtonIp->setEnabled(multiserver);
    } else {
        m_ui->pushButtonConnect->show();
        m_ui->pushButtonDisconnect->hide();
        m_ui->pushButtonNextServer->hide();
        m_ui->pushButtonIp->setEnabled(false);
    }

    m_ui->labelIsConnested->setText(chain.modeText());

    m_ui->isProtectedBackground->setStyleSheet(
        QLatin1String(m_manager.isProtected() ? protectedBadgeStyle : unprotectedBadgeStyle));
    m_ui->labelIsProtected->setText(QLatin1Char(' ') + m_manager.isProtectedText() +
                                    QLatin1Char(' '));

    showBigFlag();
    showSmallFlag();
    m_ui->labelYourIp->show();

    if (chain.isKillswitched()) {
        m_ipText = tr("warning.killswitch_triggered");
        m_ui->labelYourIp->hide();
    } else {
        m_ipText = m_manager.ipAdress();
    }
    fitIpLine();
    showCountryName();

    if (noServers) {
        m_ui->pushButtonChangeServer->hide();
        m_ui->labelNoServers->show();
    } else {
        m_ui->labelNoServers->hide();
        m_ui->pushButtonChangeServer->show();
        m_ui->pushButtonChangeServer->setServerText(m_manager.vpnServers().currServer().name);
        m_ui->pushButtonChangeServer->setEnabled(true);
    }

    QCoreApplication::processEvents();
}

void StatusWidget::showCountryName()
{
    m_countryName = m_manager.getCountryName();
    fitCountryName();
}

int StatusWidget::contentRowWidth() const
{
    const QMargins margins = m_ui->contentLayout->contentsMargins();
    return m_ui->contentWidget->width() - margins.left() - margins.right();
}

void StatusWidget::fitCountryName()
{
    QLabel* label = m_ui->labelCountryName;
    const QString shown = QFontMetrics(mediumFont(label->font(), 18))
                              .elidedText(m_countryName, Qt::ElideRight, contentRowWidth());
    label->setText(shown);
    label->setToolTip(shown == m_countryName ? QString() : m_countryName);
}

void StatusWidget::fitIpLine()
{
    // The row holds "Your IP:", the address and the switch icon; an IPv6 address first gets a
    // smaller font, then loses its middle.
    int available = contentRowWidth() - ipButtonTextMargin;
    const int spacing = m_ui->ipLayout->spacing();
    if (!m_ui->labelYourIp->isHidden())
        available -= m_ui->labelYourIp->sizeHint().width() + spacing;
    if (!m_ui->pushButtonNextServer->isHidden())
        available -= m_ui->pushButtonNextServer->width() + spacing;
    int pixels = ipPixelSize;
    while (pixels > ipSmallestPixelSize &&
           QFontMetrics(mediumFont(font(), pixels)).horizontalAdvance(m_ipText) > available)
        --pixels;
    const QString shown =
        QFontMetrics(mediumFont(font(), pixels)).elidedText(m_ipText, Qt::ElideMiddle, available);
    m_ipPixelSize = pixels;
    m_ui->pushButtonIp->setText(shown);
    m_ui->pushButtonIp->setToolTip(shown == m_ipText ? QString() : m_ipText);
    applyIpStyle();
}

void StatusWidget::applyIpStyle()
{
    m_ui->pushButtonIp->setStyleSheet(
        QString::fromLatin1(m_ipUnderlined ? ipUnderlinedStyle : ipPlainStyle).arg(m_ipPixelSize));
}

bool StatusWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->contentWidget && event->type() == QEvent::Resize) {
        fitIpLine();
        fitCountryName();
    }
    return AbstractContentPage::eventFilter(watched, event);
}

bool StatusWidget::showFlag(const std::function<void(const QPixmap&)>& show, FlagPictureSize size,
                            const QString& code)
{
    // No country, no picture: spare the service a request that can only fail.
    if (code.isEmpty())
        return false;
    QImage image;
    if (!image.loadFromData(m_manager.receiveFlagPicture(code, size)))
        return false;
    show(QPixmap::fromImage(image));
    return true;
}

void StatusWidget::showBigFlag()
{
    if (m_manager.connection().isKillswitched()) {
        m_ui->labelBigFlag->hide();
        return;
    }
    const bool shown =
        showFlag([this](const QPixmap& flag) { m_ui->labelBigFlag->setPixmap(flag); },
                 FlagPictureSize::Large, m_manager.countryCode());
    m_ui->labelBigFlag->setVisible(shown);
}

void StatusWidget::showSmallFlag()
{
    tavero::VpnServerSelector& selector = m_manager.vpnServers();
    const int countryId = selector.currServer().countryId;
    const QString code = selector.servers().countriesById.value(countryId).code;
    ServerSelectionPushButton* button = m_ui->pushButtonChangeServer;
    if (!showFlag([button](const QPixmap& flag) { button->setPixmap(flag); },
                  FlagPictureSize::Small, code)) {
        button->hidePixmap();
    }
}

void StatusWidget::settingsClick()
{
    const QSignalBlocker blocker(m_ui->pushButtonSettings);
    emit activeWindowChanged();
    m_statusController.showSettings();
}

void StatusWidget::nextServerClick()
{
    if (m_nextServerClickRunning)
        return;
    onNextServerButtonsReleased();
    m_nextServerClickRunning = true;
    startWaiting();

    m_statusController.changeServer();
    m_serverController.onSwitchToNextServer();
    m_statusController.serverChanged();

    m_ui->pushButtonChangeServer->setServerText(m_manager.vpnServers().currServer().name);
    showSmallFlag();

    stopWaiting();
    m_nextServerClickRunning = false;
}

void StatusWidget::changeServerClick()
{
    if (m_changeServerClickRunning)
        return;
    m_changeServerClickRunning = true;
    m_statusController.changeServer();
    m_statusController.goToServerSelection();
    m_changeServerClickRunning = false;
}

void StatusWidget::connectClick()
{
    emit aboutToStartWaiting();
    const QFlags<ProtocolType> protocols = m_manager.settings().protocolTypes();
    const bool onlyIkev2 =
        protocols.testFlag(ProtocolType::IKEv2) && utils::isOneFlagSetted(protocols);
    if (!tavero::NativePlatform::isRunningAsAdministrator() &&
        tavero::NativePlatform::IsRdpListening() && onlyIkev2) {
        // IKEv2 routes everything through the tunnel, which cuts a remote desktop session.
        if (ask(QMessageBox::Warning, shared("warning.found_rdp_ikev_can_disconnect_it_continue?"),
                shared("action.continue"), shared("action.cancel"))) {
            m_statusController.connect();
        }
    } else {
        m_statusController.connect();
    }
    emit aboutToStopWaiting();
}

void StatusWidget::disconnectClick()
{
    emit aboutToStartWaiting();
    m_statusController.disconnect();
    emit aboutToStopWaiting();
}

void StatusWidget::onIpButtonHoverEntered()
{
    qDebug() << "onIpButtonHoverEntered";
    if (isIconOn() && m_serverController.isMultiserverCountry()) {
        m_ipUnderlined = true;
        applyIpStyle();
        m_ui->pushButtonNextServer->setEnabled(true);
    }
}

void StatusWidget::onIpButtonHoverLeaved()
{
    qDebug() << "onIpButtonHoverLeaved";
    QFont ipFont = m_ui->pushButtonIp->font();
    ipFont.setUnderline(false);
    m_ui->pushButtonIp->setFont(ipFont);
    m_ipUnderlined = false;
    applyIpStyle();
    m_ui->pushButtonNextServer->setEnabled(false);
}

void StatusWidget::onNextServerButtonsPressed()
{
    for (QPushButton* button : {static_cast<QPushButton*>(m_ui->pushButtonIp),
                                static_cast<QPushButton*>(m_ui->pushButtonNextServer)}) {
        if (!button->isDown())
            button->setDown(true);
    }
}

void StatusWidget::onNextServerButtonsReleased()
{
    for (QPushButton* button : {static_cast<QPushButton*>(m_ui->pushButtonIp),
                                static_cast<QPushButton*>(m_ui->pushButtonNextServer)}) {
        if (button->isDown())
            button->setDown(false);
    }
    m_ui->pushButtonIp->repaint();
    m_ui->pushButtonNextServer->repaint();
}

void StatusWidget::showBubble(const QString& text, int milliseconds)
{
    m_bubbles.showBubbleMessage(text, QSystemTrayIcon::Information, milliseconds);
    QCoreApplication::processEvents();
}

void StatusWidget::onProtocolChanged()
{
    showBubble(tr("warning.protocol_was_changed_due_the_quality_of_the_server"),
               protocolChangedBubbleMs);
}

void StatusWidget::onProtocolsExpired()
{
    showBubble(tr("warning.problems_with_vpn_server_connect_to_another_server")
                   .arg(m_manager.vpnServers().currServer().name),
               chainProblemBubbleMs);
}

void StatusWidget::showWaiter()
{
    startWaiting();
}

void StatusWidget::hideWaiter()
{
    stopWaiting();
}

void StatusWidget::onReestablishFinished(bool isSuccess)
{
    if (!isSuccess)
        return;
    qWarning() << "VPN connection has been reestablished";
    showBubble(tr("warning.vpn_connection_was_reestablished"), chainProblemBubbleMs);
}

void StatusWidget::onSettedNewProtocol()
{
    if (!m_manager.isConnected())
        return;
    if (!ask(QMessageBox::Question, shared("warning.want_reconnect_with_new_protocol_settings?"),
             shared("action.yes"), shared("action.no"))) {
        return;
    }
    startWaiting();
    m_statusController.disconnect();
    m_statusController.connect();
    stopWaiting();
}

} // namespace Gui
