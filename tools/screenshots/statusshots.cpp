#include "clientstage.h"
#include "gui/pages/statuswidget.h"
#include "manager/vpnmanager.h"
#include "messageboxphoto.h"
#include "platform/platformoverrides.h"
#include "shotregistry.h"
#include "stagedpage.h"

#include <QPushButton>

namespace tavero::screenshots {
namespace {

std::unique_ptr<QWidget> makeStatus(const QString& state)
{
    const bool longData = state.startsWith(QLatin1String("long-"));
    auto stage = std::make_unique<ClientStage>(longData ? ClientStage::Data::Long
                                                        : ClientStage::Data::Usual);
    const bool connected =
        state == QLatin1String("connected") || state == QLatin1String("connected-hover") ||
        state == QLatin1String("protocol-question") || state == QLatin1String("long-connected");
    if (!stage->enter(connected ? ClientStage::State::Connected
                                : ClientStage::State::Disconnected)) {
        return nullptr;
    }
    tavero::VpnManager& manager = stage->manager();
    if (state == QLatin1String("killswitch")) {
        manager.settings().setKillSwitch(true);
        manager.killSwitcher().stopInternet();
    } else if (state == QLatin1String("no-servers")) {
        manager.vpnServers().clear();
    }

    auto status = std::make_unique<Gui::StatusWidget>(manager, stage->statusController(),
                                                      stage->serverController(),
                                                      stage->viewManager().fakeBubbles());
    ClientStage::applyFontPass(status.get());
    Gui::StatusWidget* page = status.get();
    if (state == QLatin1String("no-servers"))
        page->showState();
    else
        page->fillUp();

    if (state == QLatin1String("connected-hover")) {
        QMetaObject::invokeMethod(page, "onIpButtonHoverEntered");
    } else if (state == QLatin1String("rdp-question")) {
        manager.settings().setProtocolTypes(ProtocolType::IKEv2);
        PlatformOverrides::setAdministrator(false);
        PlatformOverrides::setRdpListening(true);
        auto* connect = page->findChild<QPushButton*>(QStringLiteral("pushButtonConnect"));
        return photographMessageBox([connect] { connect->click(); });
    } else if (state == QLatin1String("protocol-question")) {
        return photographMessageBox([page] { page->onSettedNewProtocol(); });
    }
    auto window = std::make_unique<StagedPage>(std::move(stage), std::move(status));
    if (state == QLatin1String("waiting"))
        window->showWaitingPlate();
    return window;
}

const ShotRegistration registration(
    QStringLiteral("status"),
    {QStringLiteral("disconnected"), QStringLiteral("connected"), QStringLiteral("connected-hover"),
     QStringLiteral("killswitch"), QStringLiteral("no-servers"), QStringLiteral("rdp-question"),
     QStringLiteral("protocol-question"), QStringLiteral("long-disconnected"),
     QStringLiteral("long-connected"), QStringLiteral("waiting")},
    &makeStatus);

} // namespace
} // namespace tavero::screenshots
