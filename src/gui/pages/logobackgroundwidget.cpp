#include "gui/pages/logobackgroundwidget.h"

#include "gui/shell/colors.h"

#include <QLinearGradient>
#include <QPainter>
#include <cmath>

namespace {
constexpr qint16 shadowMargin = 3;
} // namespace

LogoBackgroundWidget::LogoBackgroundWidget(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
}

LogoBackgroundWidget::~LogoBackgroundWidget() = default;

void LogoBackgroundWidget::setColor(const QColor& color)
{
    m_color = color;
    update();
}

void LogoBackgroundWidget::setGradient()
{
    m_gradient = true;
    update();
}

void LogoBackgroundWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(m_color);

    if (m_gradient) {
        QLinearGradient gradient(width() / 2.0, 0, width() / 2.0, height());
        gradient.setSpread(QGradient::PadSpread);
        QColor top(Colors::bottomBandGradient);
        gradient.setColorAt(0, top);
        top.setAlpha(0);
        gradient.setColorAt(1, top);
        painter.setBrush(gradient);
    } else {
        painter.setBrush(QBrush(m_color, Qt::SolidPattern));
    }
    // Wider than the widget so that the pen's right edge never shows.
    painter.drawRect(QRect(0, 0, static_cast<int>(std::lround(2.5 * width())), height()));

    if (!m_gradient) {
        drawShadow(painter, shadowMargin, 0, QColor(0xE4, 0xE7, 0xED), QColor(0xF0, 0xF3, 0xFA), 0,
                   1, 0, width(), height());
    }
}

void LogoBackgroundWidget::drawShadow(QPainter& painter, qint16 margin, double radius,
                                      const QColor& startColor, const QColor& endColor,
                                      double startPosition, double endPosition,
                                      double /*unusedPosition*/, double width, double height)
{
    painter.save();
    painter.setPen(Qt::NoPen);

    QLinearGradient gradient(width / 2, height - margin, width / 2, height);
    gradient.setColorAt(startPosition, startColor);
    gradient.setColorAt(endPosition, endColor);
    painter.fillRect(QRectF(0, height - margin, width, margin), gradient);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(m_color);
    const int roundness = static_cast<int>(std::lround(radius));
    painter.drawRoundedRect(
        QRectF(QPointF(margin, margin), QPointF(width - margin, height - margin)), roundness,
        roundness);
    painter.restore();
}
