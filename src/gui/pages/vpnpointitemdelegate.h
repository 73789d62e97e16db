#pragma once

#include <QColor>
#include <QItemDelegate>

class IVpnThirdColumnProvider;
class QTextDocument;
class QTreeWidget;

// Paints the cells of the server list: rows 40 pixels high, rich-text cells (section titles and
// country names are HTML spans, elided to their cell) and load texts ("37%") centred in coloured
// capsules.
class VpnPointItemDelegate : public QItemDelegate {
    Q_OBJECT

public:
    // Neither the tree nor the provider is owned; both must outlive the delegate.
    VpnPointItemDelegate(QTreeWidget* tree, IVpnThirdColumnProvider* provider,
                         QObject* parent = nullptr);
    ~VpnPointItemDelegate() override;

    static int rowHeight() { return 40; }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // The badge colour for a load of `value` per cent: green up to 25, yellow up to 50, red above.
    static QColor percentageColor(int value);
    // The badge text's colour: dark on the yellow capsule, white on the others.
    static QColor percentageTextColor(int value);
    // The capsule's rectangle inside a cell whose rectangle is `rect`.
    QRect percentageBadgeRect(const QRect& rect) const;

protected:
    // A text ending in "%" is a load badge; anything else is rich text.
    void drawDisplay(QPainter* painter, const QStyleOptionViewItem& option, const QRect& rect,
                     const QString& text) const override;

private:
    void drawSimpleText(QPainter* painter, const QRect& rect, const QString& text) const;
    void drawPercentage(QPainter* painter, const QRect& rect, const QString& text) const;
    int percentageBadgeHeight() const;
    static void elideToWidth(QTextDocument& document, int width);

    QTreeWidget* m_tree;
    IVpnThirdColumnProvider* m_provider;
};
