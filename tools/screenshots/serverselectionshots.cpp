#include "clientstage.h"
#include "gui/pages/serverselectionwidget.h"
#include "gui/shell/colors.h"
#include "gui/shell/qttools.h"
#include "shotregistry.h"
#include "stagedpage.h"

namespace tavero::screenshots {
namespace {

// The page keeps whatever size the window has; this is the window's smallest.
std::unique_ptr<QWidget> makeServerSelection(const QString& state)
{
    auto stage = std::make_unique<ClientStage>();
    if (!stage->enter(state == QLatin1String("connected") ? ClientStage::State::Connected
                                                          : ClientStage::State::Disconnected)) {
        return nullptr;
    }
    auto selection =
        std::make_unique<Gui::ServerSelectionWidget>(stage->manager(), stage->serverController());
    ClientStage::applyFontPass(selection.get());
    selection->fillUp();
    QtTools::paintWidget(selection.get(), QColor(Colors::white));
    selection->resize(360, 550);
    return std::make_unique<StagedPage>(std::move(stage), std::move(selection));
}

const ShotRegistration registration(QStringLiteral("serverselection"),
                                    {QStringLiteral("disconnected"), QStringLiteral("connected")},
                                    &makeServerSelection);

} // namespace
} // namespace tavero::screenshots
