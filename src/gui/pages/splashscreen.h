#pragma once

#include "gui/pages/abstractcontentpage.h"

#include <memory>

namespace Ui {
class SplashScreen;
}

namespace Gui {

// The start-up page shown while the flag pictures load: shield, text logo, spinner, "Loading...".
class SplashScreen : public AbstractContentPage {
    Q_OBJECT

public:
    explicit SplashScreen(QWidget* parent = nullptr);
    ~SplashScreen() override;

    // Re-applies the form's texts in the current language.
    void reTranslateUI();

private:
    std::unique_ptr<Ui::SplashScreen> m_ui;
};

} // namespace Gui
