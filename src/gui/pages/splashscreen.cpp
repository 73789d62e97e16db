#include "gui/pages/splashscreen.h"

#include "ui_splashscreen.h"

namespace Gui {

SplashScreen::SplashScreen(QWidget* parent)
    : AbstractContentPage(parent)
    , m_ui(std::make_unique<Ui::SplashScreen>())
{
    m_ui->setupUi(this);
    // The gradient comes from the style sheet, which a QWidget subclass paints only when asked.
    setAttribute(Qt::WA_StyledBackground);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
}

SplashScreen::~SplashScreen() = default;

void SplashScreen::reTranslateUI()
{
    m_ui->retranslateUi(this);
}

} // namespace Gui
