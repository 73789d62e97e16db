#include "gui/pages/serverselectionpushbutton.h"

#include "gui/shell/colors.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

namespace {
constexpr int cornerRadius = 28;
constexpr int flagLeft = 20;
constexpr int sideMargin = 20;
// A quarter of the chevron picture's 48-pixel height, as it is drawn.
constexpr int chevronDrawnHeight = 12;
constexpr QSize chevronBox{8, 11};
constexpr int verticalPadding = 36;
const QColor outlineColor(227, 229, 230);
const QColor textColor(136, 136, 136);
} // namespace

ServerSelectionPushButton::ServerSelectionPushButton(QWidget* parent)
    : QPushButton(parent)
{
    fitHeightToFont();
}

ServerSelectionPushButton::~ServerSelectionPushButton() = default;

void ServerSelectionPushButton::setPixmap(const QPixmap& pixmap)
{
    m_pixmap = pixmap;
    m_pixmapHidden = false;
    update();
}

void ServerSelectionPushButton::hidePixmap()
{
    m_pixmapHidden = true;
    update();
}

void ServerSelectionPushButton::setServerText(const QString& text)
{
    m_serverText = text;
    update();
}

int ServerSelectionPushButton::textLeft()
{
    return pixmapSize().width() + 40;
}

int ServerSelectionPushButton::availableTextWidth() const
{
    return (width() - sideMargin - shevronSize().width()) - textLeft();
}

QString ServerSelectionPushButton::elidedServerText() const
{
    return QFontMetrics(font()).elidedText(m_serverText, Qt::ElideRight,
                                           qMax(0, availableTextWidth()));
}

void ServerSelectionPushButton::paintEvent(QPaintEvent*)
{
    const int w = width();
    const int h = height();
    QPainter painter(this);
    painter.fillRect(rect(), Qt::transparent);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(outlineColor);
    painter.setBrush(QColor(Colors::white));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);

    // Flag in a one-pixel grey frame.
    const QSize box = pixmapSize();
    const int top = (h - box.height()) / 2;
    painter.fillRect(QRect(flagLeft, top, box.width() + 5, box.height() + 2),
                     QColor(Colors::countryName));
    if (!m_pixmapHidden && !m_pixmap.isNull()) {
        painter.drawPixmap(QRect(flagLeft + 1, top + 1, box.width() + 3, box.height()), m_pixmap);
    }

    const QFontMetrics metrics(font());
    const int baseline = (h - metrics.height()) / 2 + metrics.ascent();
    painter.setPen(textColor);
    painter.setFont(font());
    painter.drawText(textLeft(), baseline, elidedServerText());

    const QPixmap chevron(QStringLiteral(":/pictures/icon-chevron.png"));
    painter.drawPixmap(
        QRect(QPoint(w - sideMargin - shevronSize().width(), (h - chevronDrawnHeight) / 2),
              chevronBox),
        chevron);
}

void ServerSelectionPushButton::changeEvent(QEvent* event)
{
    // A style sheet's font size arrives as a font change as well.
    if (event->type() == QEvent::FontChange)
        fitHeightToFont();
    QPushButton::changeEvent(event);
}

void ServerSelectionPushButton::fitHeightToFont()
{
    setFixedHeight(QFontMetrics(font()).height() + verticalPadding);
}
