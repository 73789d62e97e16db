#include "gui/pages/aboutprogrammwindowswidget.h"
#include "shotregistry.h"

namespace tavero::screenshots {
namespace {

std::unique_ptr<QWidget> makeAbout(const QString&)
{
    auto about = std::make_unique<AboutProgrammWindowsWidget>();
    about->resize(715, 559);
    return about;
}

const ShotRegistration registration(QStringLiteral("about"), {QStringLiteral("default")},
                                    &makeAbout);

} // namespace
} // namespace tavero::screenshots
