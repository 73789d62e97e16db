#include "gui/pages/logobackgroundwidget.h"
#include "gui/pages/waitingplate.h"
#include "gui/shell/colors.h"
#include "shotregistry.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tavero::screenshots {
namespace {

// A stand-in page with the two kinds of background band (solid with its bottom shadow, and the
// fading gradient) and some text, so that the plate's translucency shows.
std::unique_ptr<QWidget> makePlainPage()
{
    auto page = std::make_unique<QWidget>();
    page->setStyleSheet(
        QStringLiteral("QWidget {background: %1;} QLabel {color: %2; font-size: 22px; "
                       "background: transparent;}")
            .arg(QLatin1String(Colors::windowBackground), QLatin1String(Colors::loginText)));
    auto* layout = new QVBoxLayout(page.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* top = new LogoBackgroundWidget(page.get());
    top->setFixedHeight(93);
    layout->addWidget(top);

    auto* text = new QLabel(QStringLiteral("TAVERO"), page.get());
    text->setAlignment(Qt::AlignCenter);
    layout->addWidget(text, 1);

    auto* bottom = new LogoBackgroundWidget(page.get());
    bottom->setFixedHeight(200);
    bottom->setColor(QColor(Colors::bottomBandGradient));
    bottom->setGradient();
    layout->addWidget(bottom);

    page->resize(360, 550);
    return page;
}

std::unique_ptr<QWidget> makeWaitingPlate(const QString& state)
{
    std::unique_ptr<QWidget> page = makePlainPage();
    if (state == QLatin1String("waiting")) {
        // As the main window does: a child covering the whole page.
        auto* plate = new Gui::WaitingPlate(page.get());
        plate->setGeometry(page->rect());
    }
    return page;
}

const ShotRegistration registration(QStringLiteral("waitingplate"),
                                    {QStringLiteral("plain"), QStringLiteral("waiting")},
                                    &makeWaitingPlate);

} // namespace
} // namespace tavero::screenshots
