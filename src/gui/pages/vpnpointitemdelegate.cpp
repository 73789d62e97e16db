#include "gui/pages/vpnpointitemdelegate.h"

#include "gui/pages/ivpnthirdcolumnprovider.h"
#include "gui/shell/colors.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTreeWidget>

namespace {
// Extra indent of texts that name a number of servers.
constexpr int serverCountIndent = 8;
constexpr int badgeCornerRadius = 14;
constexpr int badgeTextPixelSize = 12;
} // namespace

VpnPointItemDelegate::VpnPointItemDelegate(QTreeWidget* tree, IVpnThirdColumnProvider* provider,
                                           QObject* parent)
    : QItemDelegate(parent)
    , m_tree(tree)
    , m_provider(provider)
{}

VpnPointItemDelegate::~VpnPointItemDelegate() = default;

QSize VpnPointItemDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return {10, rowHeight()};
}

QColor VpnPointItemDelegate::percentageColor(int value)
{
    if (value <= 25)
        return QColor(Colors::loadLow);
    if (value <= 50)
        return QColor(Colors::loadMedium);
    return QColor(Colors::loadHigh);
}

QColor VpnPointItemDelegate::percentageTextColor(int value)
{
    // White on the yellow badge is barely legible; the dark text colour of the pages is not.
    return QColor(value > 25 && value <= 50 ? Colors::loginText : Colors::white);
}

int VpnPointItemDelegate::percentageBadgeHeight() const
{
    return QFontMetrics(m_provider->percentageFont()).height() + 12;
}

QRect VpnPointItemDelegate::percentageBadgeRect(const QRect& rect) const
{
    const int height = percentageBadgeHeight();
    return {rect.left() + 1, rect.top() + (rowHeight() - height) / 2,
            m_provider->thirdColumnWidth() + 2, height};
}

void VpnPointItemDelegate::drawDisplay(QPainter* painter, const QStyleOptionViewItem& option,
                                       const QRect& rect, const QString& text) const
{
    if (text.endsWith(QLatin1Char('%'))) {
        drawPercentage(painter, rect, text);
        return;
    }
    painter->save();
    const QPalette::ColorGroup group =
        option.state & QStyle::State_Enabled ? QPalette::Normal : QPalette::Disabled;
    painter->setPen(option.palette.color(
        group, option.state & QStyle::State_Selected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(option.font);
    drawSimpleText(painter, rect, text);
    painter->restore();
}

void VpnPointItemDelegate::drawSimpleText(QPainter* painter, const QRect& rect,
                                          const QString& text) const
{
    if (text.isEmpty())
        return;
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(painter->font());
    document.setHtml(text);

    int x = rect.left() + 2;
    if (text.contains(tr("label.server")))
        x += serverCountIndent;
    elideToWidth(document, rect.right() - x);
    const int y = rect.top() + (rect.height() - QFontMetrics(painter->font()).height()) / 2;

    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, painter->pen().color());
    painter->save();
    painter->setClipRect(rect, Qt::IntersectClip);
    painter->translate(x, y);
    document.documentLayout()->draw(painter, context);
    painter->restore();
}

void VpnPointItemDelegate::elideToWidth(QTextDocument& document, int width)
{
    // Cut whole characters off the end, keeping the span's format, until the text and an
    // ellipsis fit: a long country name must not end mid-word at the badge's edge.
    if (width <= 0 || document.idealWidth() <= width)
        return;
    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(QString(QChar(0x2026)));
    cursor.movePosition(QTextCursor::Left);
    while (document.idealWidth() > width && cursor.position() > 0)
        cursor.deletePreviousChar();
}

void VpnPointItemDelegate::drawPercentage(QPainter* painter, const QRect& rect,
                                          const QString& text) const
{
    bool ok = false;
    const int value = text.chopped(1).toInt(&ok, 10);
    if (!ok)
        return;

    painter->save();
    const QColor color = percentageColor(value);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(color);
    painter->setBrush(color);
    painter->drawRoundedRect(percentageBadgeRect(rect), badgeCornerRadius, badgeCornerRadius);

    QFont font = m_provider->percentageFont();
    font.setFamily(QStringLiteral("Montserrat"));
    font.setPixelSize(badgeTextPixelSize);
    painter->setFont(font);
    painter->setPen(percentageTextColor(value));
    painter->setBrush(Qt::NoBrush);
    painter->drawText(percentageBadgeRect(rect), Qt::AlignCenter, text);
    painter->restore();
}
