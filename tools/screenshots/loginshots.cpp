#include "clientstage.h"
#include "gui/pages/loginwidget.h"
#include "messageboxphoto.h"
#include "shotregistry.h"
#include "stagedpage.h"

#include <QLineEdit>
#include <QPushButton>

namespace tavero::screenshots {
namespace {

// "empty" as the page first appears, "filled" with typed values, and the two boxes for a missing
// e-mail or password.
std::unique_ptr<QWidget> makeLogin(const QString& state)
{
    auto stage = std::make_unique<ClientStage>();
    auto login = std::make_unique<Gui::LoginWidget>(stage->manager(), stage->loginController());
    ClientStage::applyFontPass(login.get());
    auto* email = login->findChild<QLineEdit*>(QStringLiteral("lineEditEmail"));
    auto* password = login->findChild<QLineEdit*>(QStringLiteral("lineEditPassword"));
    auto* button = login->findChild<QPushButton*>(QStringLiteral("pushButtonEnter"));

    if (state == QLatin1String("filled")) {
        email->setText(QStringLiteral("traveller@tavero.example"));
        password->setText(QStringLiteral("secret"));
    } else if (state == QLatin1String("no-email")) {
        return photographMessageBox([button] { button->click(); });
    } else if (state == QLatin1String("no-password")) {
        email->setText(QStringLiteral("traveller@tavero.example"));
        return photographMessageBox([button] { button->click(); });
    }
    return std::make_unique<StagedPage>(std::move(stage), std::move(login));
}

const ShotRegistration registration(QStringLiteral("login"),
                                    {QStringLiteral("empty"), QStringLiteral("filled"),
                                     QStringLiteral("no-email"), QStringLiteral("no-password")},
                                    &makeLogin);

} // namespace
} // namespace tavero::screenshots
