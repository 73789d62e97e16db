#pragma once

#include "api/protocoltype.h"

#include <QDialog>
#include <QLocale>
#include <memory>

class QComboBox;
class QLabel;
class QPainter;
class SettingsController;

namespace Ui {
class SettingsDialog;
}

namespace tavero {
class LanguageMaster;
class VpnManager;
} // namespace tavero

// The settings window: start with the system, automatic connection and its target, protocol,
// kill switch, interface language, the account with its log-out button, and the About tab.
// Created once by the view manager and reused: fillUp() loads every control before each showing,
// OK writes them (nothing is written before, except the language, which switches at once), and
// closing only hides the dialog.
class SettingsDialog : public QDialog {
    Q_OBJECT

public:
    SettingsDialog(tavero::VpnManager& vpnManager, SettingsController& settingsController,
                   tavero::LanguageMaster& languageMaster, QWidget* parent = nullptr);
    ~SettingsDialog() override;

    // Refreshes the account, then loads the controls from the platform's start entry, the
    // settings and the account. A stored protocol set that is neither one protocol nor all of
    // them is rewritten to all of them (automatic).
    void fillUp();
    void selectSettingsTab();
    void selectInformationTab();
    // Applies the form's texts again, the e-mail, and rebuilds the protocol list keeping the
    // current choice.
    void reTranslateUI();

    // Enables or disables one entry of a combo box's list (disabled entries cannot be chosen).
    static void setComboBoxItemEnabled(QComboBox* comboBox, int index, bool enabled);

signals:
    void onLanguageApplySignal(QLocale::Language language);
    // The user asked for a check from the About tab and a newer version exists.
    void checkNewVersionAppSignal();
    // Every change of the kill-switch box, before OK (Qt::CheckState values).
    void killSwitchChangState(int state);
    // OK saved a protocol choice other than the one loaded.
    void settedNewProtocol();

public slots:
    void onProtocolChanged();
    void onKillswitchStateChanged(int state);
    void onOkClicked();
    void tabChanged(int index);
    void onMainTab();
    void onProtocolsTab();
    void onAboutProgrammTab();
    void onLogout();
    void onProtocolRadioGroupToggled();
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void fillUpProtocolsCombobox();
    void fillUpLanguagesCombobox();
    void applyCodeTexts();
    // True when the chosen protocol is allowed now or the user confirms saving it anyway.
    bool checkProtocolsBeforeSave();
    int selectedProtocols() const;
    void checkForNewVersion();

    void drawLineOnTheRight(QPainter& painter, QWidget* widget, QLabel* titleLabel, int dx, int dy);
    void drawBorderAroundAuthimaticConnection(QPainter& painter);
    void drawBorderAroundAccountDetails(QPainter& painter);

    std::unique_ptr<Ui::SettingsDialog> m_ui;
    tavero::VpnManager& m_vpnManager;
    SettingsController& m_settingsController;
    tavero::LanguageMaster& m_languageMaster;
    QFlags<ProtocolType> m_loadedProtocols = QFlags<ProtocolType>(protocols::allProtocols);
};
