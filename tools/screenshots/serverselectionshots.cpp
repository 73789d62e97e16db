#include "clientstage.h"
#include "gui/pages/serverselectionwidget.h"
#include "shotregistry.h"
#include "stagedpage.h"

namespace tavero::screenshots {
namespace {

// The page keeps whatever size the window has: the size the status page gave it.
std::unique_ptr<QWidget> makeServerSelection(const QString& state)
{
    auto stage = std::make_unique<ClientStage>(
        state == QLatin1String("long") ? ClientStage::Data::Long : ClientStage::Data::Usual);
    if (!stage->enter(state == QLatin1String("connected") ? ClientStage::State::Connected
                                                          : ClientStage::State::Disconnected)) {
        return nullptr;
    }
    auto selection =
        std::make_unique<Gui::ServerSelectionWidget>(stage->manager(), stage->serverController());
    ClientStage::applyFontPass(selection.get());
    selection->fillUp();
    return std::make_unique<StagedPage>(std::move(stage), std::move(selection), 550);
}

const ShotRegistration registration(QStringLiteral("serverselection"),
                                    {QStringLiteral("disconnected"), QStringLiteral("connected"),
                                     QStringLiteral("long")},
                                    &makeServerSelection);

} // namespace
} // namespace tavero::screenshots
