#include "gui/pages/splashscreen.h"
#include "shotregistry.h"

namespace tavero::screenshots {
namespace {

// At the size the main window gives the splash page.
std::unique_ptr<QWidget> makeSplash(const QString&)
{
    auto splash = std::make_unique<Gui::SplashScreen>();
    splash->resize(360, 550);
    return splash;
}

const ShotRegistration registration(QStringLiteral("splash"), {QStringLiteral("default")},
                                    &makeSplash);

} // namespace
} // namespace tavero::screenshots
