#include "gui/pages/waitingplate.h"

#include "gui/shell/colors.h"
#include "ui_waitingplate.h"

#include <QPainter>

namespace Gui {

namespace {
// Mostly opaque, so the page shows through faintly.
constexpr int plateAlpha = 225;
} // namespace

WaitingPlate::WaitingPlate(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::WaitingPlate>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_TranslucentBackground);
}

WaitingPlate::~WaitingPlate() = default;

WaitingIndicator* WaitingPlate::indicator() const
{
    return m_ui->indicator_;
}

void WaitingPlate::paintEvent(QPaintEvent*)
{
    QColor color(Colors::windowBackground);
    color.setAlpha(plateAlpha);
    QPainter painter(this);
    painter.fillRect(rect(), color);
}

} // namespace Gui
