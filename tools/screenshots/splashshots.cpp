#include "clientstage.h"
#include "gui/pages/splashscreen.h"
#include "shotregistry.h"
#include "stagedpage.h"

namespace tavero::screenshots {
namespace {

std::unique_ptr<QWidget> makeSplash(const QString&)
{
    auto splash = std::make_unique<Gui::SplashScreen>();
    ClientStage::applyFontPass(splash.get());
    return std::make_unique<StagedPage>(std::make_unique<ClientStage>(), std::move(splash));
}

const ShotRegistration registration(QStringLiteral("splash"), {QStringLiteral("default")},
                                    &makeSplash);

} // namespace
} // namespace tavero::screenshots
