#include "gui/pages/waitingindicator.h"

#include <QPainter>
#include <QTimerEvent>
#include <algorithm>

namespace Gui {

WaitingIndicator::WaitingIndicator(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    m_timer.start(tickMilliseconds, this);
}

WaitingIndicator::~WaitingIndicator() = default;

WaitingIndicator::Geometry WaitingIndicator::geometryFor(const QSize& size)
{
    const int side = std::min(size.width(), size.height());
    Geometry g;
    // Truncation toward zero throughout, so tiny and empty widgets end at zero, never negative.
    g.outerRadius = static_cast<int>((side - 1) * 0.5);
    g.innerRadius = static_cast<int>(g.outerRadius * 0.5);
    g.capsuleLength = g.outerRadius - g.innerRadius;
    // Small spinners get relatively fatter capsules so they stay visible.
    g.capsuleWidth = static_cast<int>(g.capsuleLength * (side > 32 ? 0.4 : 0.5));
    g.cornerRadius = g.capsuleWidth / 2;
    return g;
}

void WaitingIndicator::advance()
{
    m_angle = (m_angle + angleStep) % 360;
    update();
}

void WaitingIndicator::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timer.timerId())
        advance();
    else
        QWidget::timerEvent(event);
}

void WaitingIndicator::paintEvent(QPaintEvent*)
{
    const Geometry g = geometryFor(size());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    const QRect capsule(static_cast<int>(-g.capsuleWidth * 0.5), -(g.innerRadius + g.capsuleLength),
                        g.capsuleWidth, g.capsuleLength);
    for (int i = 0; i < capsuleCount; ++i) {
        QColor color(Qt::gray);
        color.setAlphaF(1.0 - static_cast<double>(i) / capsuleCount);
        painter.setBrush(color);
        painter.save();
        painter.translate(width() / 2, height() / 2);
        painter.rotate(m_angle - angleStep * i);
        painter.drawRoundedRect(capsule, g.cornerRadius, g.cornerRadius, Qt::AbsoluteSize);
        painter.restore();
    }
}

} // namespace Gui
