#pragma once

#include "gui/pages/abstractcontentpage.h"

#include <memory>

class LoginController;

namespace Ui {
class LoginWidget;
}

namespace tavero {
class VpnManager;
}

namespace Gui {

// The sign-in page: e-mail, password and the login button (Enter in either field does the same).
// Checks only that both fields are filled, then hands them, exactly as typed, to the login
// controller, which shows refusals itself and moves to the status page on success.
class LoginWidget : public AbstractContentPage {
    Q_OBJECT

public:
    // Neither the manager nor the controller is owned; both outlive the page.
    LoginWidget(tavero::VpnManager& manager, LoginController& controller,
                QWidget* parent = nullptr);
    ~LoginWidget() override;

    // Re-applies the form's texts in the current language.
    void reTranslateUI();
    // Called once after the start-up font pass; the page needs no correction.
    void correctFontAfterScale();

private slots:
    void enterButtonClick();
    // Kept for the form's other sign-in kinds; nothing calls it.
    void loginTypeClick();

private:
    void showMissingField(const QString& text, QWidget* field);

    tavero::VpnManager& m_manager;
    LoginController& m_controller;
    std::unique_ptr<Ui::LoginWidget> m_ui;
};

} // namespace Gui
