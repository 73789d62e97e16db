#include "gui/pages/settingsdialog.h"

#include "api/iserverapi.h"
#include "api/serverapi.h"
#include "app/languagemaster.h"
#include "gui/pages/newversiondialog.h"
#include "gui/shell/colors.h"
#include "gui/shell/qttools.h"
#include "gui/shell/settingscontroller.h"
#include "gui/shell/viewmanagerutils.h"
#include "manager/vpnmanager.h"
#include "platform/iplatform.h"
#include "ui_settingsdialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QtDebug>

namespace {
const QColor ruleColor(0xe7, 0xe7, 0xe7);
constexpr int ruleWidth = 2;
// Where the section rules and frames end: this far from the section's right edge.
constexpr int rightInset = 18;
} // namespace

SettingsDialog::SettingsDialog(tavero::VpnManager& vpnManager,
                               SettingsController& settingsController,
                               tavero::LanguageMaster& languageMaster, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::SettingsDialog>())
    , m_vpnManager(vpnManager)
    , m_settingsController(settingsController)
    , m_languageMaster(languageMaster)
{
    // Every text of the dialog is 13-pixel Montserrat (the start-up font pass sets the same). It
    // reaches the children through font inheritance. It is set before the form is built, because
    // a widget with a style sheet keeps the font its parent had when the sheet was applied, and no
    // container carries a style sheet (that would cut the inheritance off): the account panel is
    // coloured through the palette.
    QFont dialogFont = font();
    dialogFont.setFamily(QStringLiteral("Montserrat"));
    dialogFont.setPixelSize(13);
    setFont(dialogFont);
    m_ui->setupUi(this);
    QtTools::paintWidget(m_ui->widgetAccountDetails, QColor(Colors::white));
    QtTools::paintWidget(m_ui->widgetAccountRow, QColor(0xf4, 0xf2, 0xf3));
    // Text colours through the palette as well: a style sheet would also change the size.
    for (QLabel* title : {m_ui->labelMainSettingsTitle, m_ui->labelConnectionSettings,
                          m_ui->labelKillswitch, m_ui->labelAccount})
        QtTools::setLabelFontColor(title, QColor(Colors::loginText));
    QtTools::setLabelFontColor(m_ui->labelKillswitchNotes, Qt::black);
    QtTools::setLabelFontColor(m_ui->labelVersion, QColor(Colors::caption));
    // The log-out button's style sheet is fixed; its font is given explicitly so the sheet keeps
    // it.
    m_ui->pushButtonLogout->setFont(dialogFont);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                   Qt::WindowCloseButtonHint);
    resize(minimumSize());

    // Tabs are switched with the tab bar; the alternative About panel is not used here.
    m_ui->widgetTopBar->hide();
    m_ui->widgetAboutForMacos->hide();
    m_ui->widgetAboutWindows->show();

    m_ui->labelMainSettingsTitle->setText(tr("label.autoload"));
#ifdef Q_OS_WIN
    m_ui->checkBoxRunOnStart->setText(tr("label.run_on_windows_startup"));
#endif
    m_ui->labelKillswitch->setText(tr("label.internet_killswitch"));
    m_ui->labelAccount->setText(tr("label.account"));
    for (QLabel* title : {m_ui->labelMainSettingsTitle, m_ui->labelConnectionSettings,
                          m_ui->labelKillswitch, m_ui->labelAccount})
        QtTools::setBoldFont(title, false);
    applyCodeTexts();

    fillUpProtocolsCombobox();
    fillUpLanguagesCombobox();

    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &SettingsDialog::onOkClicked);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
    connect(m_ui->checkBoxKillswitch, &QCheckBox::stateChanged, this,
            &SettingsDialog::onKillswitchStateChanged);
    connect(m_ui->selectProtocolComboBox, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &SettingsDialog::onProtocolChanged);
    connect(m_ui->selectLanguageComboBox, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this](int index) {
                if (index < 0)
                    return;
                const QLocale locale = m_ui->selectLanguageComboBox->itemData(index).toLocale();
                emit onLanguageApplySignal(locale.language());
            });
    connect(m_ui->tabs, &QTabWidget::currentChanged, this, &SettingsDialog::tabChanged);
    connect(m_ui->toolButtonMainTab, &QToolButton::clicked, this, &SettingsDialog::onMainTab);
    connect(m_ui->toolButtonAboutProgrammTab, &QToolButton::clicked, this,
            &SettingsDialog::onAboutProgrammTab);
    connect(m_ui->pushButtonLogout, &QPushButton::clicked, this, &SettingsDialog::onLogout);
    connect(m_ui->checkBoxAutoConnection, &QCheckBox::toggled, this,
            &SettingsDialog::onProtocolRadioGroupToggled);
    connect(m_ui->widgetAboutWindows, &AboutProgrammWindowsWidget::checkNewVersionAppSignal, this,
            &SettingsDialog::checkForNewVersion);

    for (QWidget* section : {m_ui->widgetMainSettings, m_ui->widgetConnectionSettings,
                             m_ui->widgetKillswitch, m_ui->widgetAccount})
        section->installEventFilter(this);
    tabChanged(m_ui->tabs->currentIndex());
    onProtocolRadioGroupToggled();
}

SettingsDialog::~SettingsDialog() = default;

void SettingsDialog::fillUp()
{
    m_vpnManager.receiveAccountInfo(); // refreshes the e-mail shown below; failures show the stored

    tavero::ISettings& settings = m_vpnManager.settings();
    m_ui->checkBoxRunOnStart->setChecked(m_vpnManager.platform().isRunOnStart());
    m_ui->checkBoxAutoConnection->setChecked(settings.isAutoConnection());
    m_ui->radioButtonAutoConnectToLastLocation->setChecked(!settings.isAutoLocation());
    m_ui->radioButtonAutoConnectToRecomendedLocation->setChecked(settings.isAutoLocation());
    {
        // Loading is not a change of the user's: no confirmation, no signal.
        const QSignalBlocker blocker(m_ui->checkBoxKillswitch);
        m_ui->checkBoxKillswitch->setChecked(settings.isKillSwitch());
    }
    onProtocolRadioGroupToggled();
    applyCodeTexts();

    fillUpProtocolsCombobox();
    QFlags<ProtocolType> protocolTypes = settings.protocolTypes();
    if (!protocols::isSingleFlag(protocolTypes)) {
        const QFlags<ProtocolType> automatic(protocols::allProtocols);
        if (protocolTypes != automatic)
            settings.setProtocolTypes(automatic);
        protocolTypes = automatic;
    }
    const int index = m_ui->selectProtocolComboBox->findData(int(protocolTypes));
    // A single protocol the list does not offer (L2TP, PPTP) shows as the automatic choice.
    m_ui->selectProtocolComboBox->setCurrentIndex(index < 0 ? 0 : index);
    m_loadedProtocols = protocolTypes;
}

void SettingsDialog::selectSettingsTab()
{
    if (m_ui->tabs->currentWidget() == m_ui->tabAboutProgramm)
        m_ui->tabs->setCurrentWidget(m_ui->tabCommon);
}

void SettingsDialog::selectInformationTab()
{
    m_ui->tabs->setCurrentWidget(m_ui->tabAboutProgramm);
}

void SettingsDialog::reTranslateUI()
{
    m_ui->retranslateUi(this);
    applyCodeTexts();
    const int protocolIndex = m_ui->selectProtocolComboBox->currentIndex();
    fillUpProtocolsCombobox();
    m_ui->selectProtocolComboBox->setCurrentIndex(protocolIndex);
}

void SettingsDialog::setComboBoxItemEnabled(QComboBox* comboBox, int index, bool enabled)
{
    auto* model = qobject_cast<QStandardItemModel*>(comboBox ? comboBox->model() : nullptr);
    QStandardItem* item = model ? model->item(index) : nullptr;
    if (!item)
        return;
    qDebug() << "Combobox Index" << index << "enabled" << enabled;
    item->setEnabled(enabled);
}

void SettingsDialog::onProtocolChanged() {}

void SettingsDialog::onKillswitchStateChanged(int state)
{
    if (state == Qt::Checked && !tavero::ServerApi::isKillswitchAllowed()) {
        const QMessageBox::StandardButton answer = ViewManagerUtils::execMessageBox(
            QMessageBox::Warning, tr("TAVERO"),
            tr("label.killswitch_is_unavailable_want_to_continue"),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::NoButton);
        // The "action.yes" button answers Ok. The box is unchecked once the click that checked
        // it is over: a check box swallows its own state change while it handles a click, and
        // would then neither report state 0 nor notice the user's next click.
        if (answer != QMessageBox::Ok) {
            QMetaObject::invokeMethod(
                m_ui->checkBoxKillswitch,
                [box = m_ui->checkBoxKillswitch] { box->setChecked(false); }, Qt::QueuedConnection);
            return;
        }
    }
    emit killSwitchChangState(state);
}

void SettingsDialog::onOkClicked()
{
    if (!checkProtocolsBeforeSave())
        return;

    tavero::ISettings& settings = m_vpnManager.settings();
    const int protocolTypes = selectedProtocols();
    m_vpnManager.platform().setRunOnStart(m_ui->checkBoxRunOnStart->isChecked());
    settings.setAutoConnection(m_ui->checkBoxAutoConnection->isChecked());
    settings.setAutoLocation(m_ui->radioButtonAutoConnectToRecomendedLocation->isChecked());
    settings.setKillSwitch(m_ui->checkBoxKillswitch->isChecked());
    settings.setProtocolTypes(QFlags<ProtocolType>(protocolTypes));

    if (QFlags<ProtocolType>(protocolTypes) != m_loadedProtocols)
        emit settedNewProtocol();
    accept();
}

void SettingsDialog::tabChanged(int index)
{
    const QWidget* current = m_ui->tabs->widget(index);
    m_ui->toolButtonMainTab->setChecked(current == m_ui->tabCommon);
    m_ui->toolButtonAboutProgrammTab->setChecked(current == m_ui->tabAboutProgramm);
}

void SettingsDialog::onMainTab()
{
    m_ui->tabs->setCurrentWidget(m_ui->tabCommon);
}

void SettingsDialog::onProtocolsTab()
{
    // The protocol choice lives on the common tab.
    m_ui->tabs->setCurrentWidget(m_ui->tabCommon);
    m_ui->selectProtocolComboBox->setFocus();
}

void SettingsDialog::onAboutProgrammTab()
{
    m_ui->tabs->setCurrentWidget(m_ui->tabAboutProgramm);
}

void SettingsDialog::onLogout()
{
    m_vpnManager.settings().setAutoConnection(false);
    m_vpnManager.disconnect();
    m_settingsController.logOut();
    QDialog::reject();
}

void SettingsDialog::onProtocolRadioGroupToggled()
{
    // The two targets only mean something while automatic connection is on.
    const bool automatic = m_ui->checkBoxAutoConnection->isChecked();
    m_ui->radioButtonAutoConnectToLastLocation->setEnabled(automatic);
    m_ui->radioButtonAutoConnectToRecomendedLocation->setEnabled(automatic);
}

void SettingsDialog::reject()
{
    QDialog::reject(); // hides; the dialog is filled again before it is next shown
}

void SettingsDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
    reject();
}

bool SettingsDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Paint)
        return QDialog::eventFilter(watched, event);
    auto* section = qobject_cast<QWidget*>(watched);
    if (!section)
        return QDialog::eventFilter(watched, event);

    QPainter painter(section);
    QPen pen(ruleColor, ruleWidth, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    if (section == m_ui->widgetMainSettings) {
        drawLineOnTheRight(painter, section, m_ui->labelMainSettingsTitle, 0, 0);
        drawBorderAroundAuthimaticConnection(painter);
    } else if (section == m_ui->widgetConnectionSettings) {
        drawLineOnTheRight(painter, section, m_ui->labelConnectionSettings, 0, 0);
    } else if (section == m_ui->widgetKillswitch) {
        drawLineOnTheRight(painter, section, m_ui->labelKillswitch, 0, 0);
    } else if (section == m_ui->widgetAccount) {
        drawLineOnTheRight(painter, section, m_ui->labelAccount, 0, 1);
        drawBorderAroundAccountDetails(painter);
    }
    return true;
}

void SettingsDialog::fillUpProtocolsCombobox()
{
    QComboBox* combo = m_ui->selectProtocolComboBox;
    combo->clear();
    combo->addItem(QCoreApplication::translate("QObject", "label.auto_protocol"),
                   protocols::allProtocols);
    combo->addItem(QStringLiteral("IKEv2"), int(IKEv2));
    combo->addItem(QStringLiteral("OpenVPN UDP"), int(OvpnUdp));
    combo->addItem(QStringLiteral("OpenVPN TCP"), int(OvpnTcp));
    // Disabled rather than removed, so a stored choice the service no longer allows still shows.
    setComboBoxItemEnabled(combo, 1, tavero::ServerApi::isIKEv2Allowed());
    setComboBoxItemEnabled(combo, 2, tavero::ServerApi::isOpenVpnAllowed());
    setComboBoxItemEnabled(combo, 3, tavero::ServerApi::isOpenVpnAllowed());
}

void SettingsDialog::fillUpLanguagesCombobox()
{
    QComboBox* combo = m_ui->selectLanguageComboBox;
    for (const tavero::LanguageInfo& language : m_languageMaster.getLanguageInfos())
        combo->addItem(language.displayName, language.locale);
    const int stored =
        m_languageMaster.getLanguageIndexByName(m_vpnManager.settings().getSelectedLanguage());
    combo->setCurrentIndex(stored < 0 ? 0 : stored);
}

void SettingsDialog::applyCodeTexts()
{
    QString email = m_vpnManager.accountEmail();
    if (email.isEmpty())
        email = m_vpnManager.settings().getEmail();
    m_ui->labelMail->setText(email);
#ifndef Q_OS_WIN
    // The form's texts name Windows; elsewhere the entry starts the client with the session.
    m_ui->checkBoxRunOnStart->setText(tr("label.run_at_login"));
#endif
    m_ui->labelVersion->setText(tr("label.version").arg(QCoreApplication::applicationVersion()));
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("label.ok"));
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(tr("label.cancel"));
    // Longer translations of "Exit" ("Cerrar sesión") must not touch the button's border; the
    // form's 75 pixels stay the least.
    QtTools::setButtonTextPadding(m_ui->pushButtonLogout, 10);
    m_ui->pushButtonLogout->setMinimumWidth(qMax(m_ui->pushButtonLogout->minimumWidth(), 75));
}

bool SettingsDialog::checkProtocolsBeforeSave()
{
    const int protocolTypes = selectedProtocols();
    if (protocolTypes == protocols::allProtocols)
        return true;
    const bool forbidden =
        ((protocolTypes & IKEv2) && !tavero::ServerApi::isIKEv2Allowed()) ||
        ((protocolTypes & (OvpnTcp | OvpnUdp)) && !tavero::ServerApi::isOpenVpnAllowed());
    if (!forbidden)
        return true;

    QMessageBox box(QMessageBox::Warning,
                    QCoreApplication::translate("QObject", "title.settings_confirmation"),
                    QCoreApplication::translate(
                        "QObject", "warning.selected_protocol_not_allowed_save_anyway?"),
                    QMessageBox::Ok, this);
    box.addButton(QCoreApplication::translate("QObject", "action.cancel"), QMessageBox::RejectRole);
    box.setDefaultButton(static_cast<QPushButton*>(nullptr));
    box.exec();
    return box.clickedButton() == box.button(QMessageBox::Ok);
}

int SettingsDialog::selectedProtocols() const
{
    const QVariant data = m_ui->selectProtocolComboBox->currentData();
    return data.isValid() ? data.toInt() : protocols::allProtocols;
}

void SettingsDialog::checkForNewVersion()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const LastVersionGettingResult latest = m_vpnManager.getAPIService().receiveLastVersion();
    QApplication::restoreOverrideCursor();

    if (latest.status != RequestResult::Ok) {
        // Saying "latest version" would be wrong when the service could not be asked.
        ViewManagerUtils::execMessageBox(
            QMessageBox::Warning, tr("TAVERO"),
            QCoreApplication::translate("QObject",
                                        "warning.connection_problems_check_internet_connection"),
            QMessageBox::Ok, QMessageBox::NoButton);
        return;
    }
    if (hasNewVersionForDevice(latest))
        emit checkNewVersionAppSignal();
    else
        m_ui->widgetAboutWindows->showYouHaveTheLatestVersion();
}

void SettingsDialog::drawLineOnTheRight(QPainter& painter, QWidget* widget, QLabel* titleLabel,
                                        int dx, int dy)
{
    const QRect title = titleLabel->geometry();
    const QFontMetrics metrics(titleLabel->font());
    const int y = title.top() + metrics.height() / 2 + 2 + dy;
    const int from = title.left() + metrics.horizontalAdvance(titleLabel->text()) + 10 + dx;
    const int to = widget->width() - rightInset;
    if (from < to)
        painter.drawLine(from, y, to, y);
}

void SettingsDialog::drawBorderAroundAuthimaticConnection(QPainter& painter)
{
    const QWidget* section = m_ui->widgetMainSettings;
    const QCheckBox* caption = m_ui->checkBoxAutoConnection;
    const QRect box = caption->geometry();
    const int top = box.top() + box.height() / 2 + 1;
    const int left = box.left() - 10;
    const int right = section->width() - rightInset;
    const int bottom = section->height() - 11;
    // The check box is the frame's caption: the top edge stops before it and resumes after it.
    const int captionEnd =
        box.left() + QFontMetrics(caption->font()).horizontalAdvance(caption->text()) + 23;

    const QPoint open[] = {
        {box.left(), top}, {left, top}, {left, bottom}, {right, bottom}, {right, top}};
    painter.drawPolyline(open, 5);
    if (captionEnd < right)
        painter.drawLine(captionEnd, top, right, top);
}

void SettingsDialog::drawBorderAroundAccountDetails(QPainter& painter)
{
    painter.drawRect(m_ui->widgetAccountDetails->geometry().adjusted(-1, -1, 1, 1));
}
