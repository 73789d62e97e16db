// How the server list paints: load capsules (colour by load, text placement), rich-text cells,
// row height, and the tree's separator lines and own look.
#include "gui/pages/ivpnthirdcolumnprovider.h"
#include "gui/pages/servesselectiontreewidget.h"
#include "gui/pages/vpnpointitemdelegate.h"
#include "gui/shell/colors.h"
#include "support/testmain.h"
#include "support/widgetpainting.h"

#include <QPainter>

using tavero::test::colorMismatch;
using tavero::test::colorsNear;
using tavero::test::paintedImage;

namespace {

class Provider : public IVpnThirdColumnProvider {
public:
    int thirdColumnWidth() const override { return 48; }
    QFont percentageFont() const override
    {
        QFont font;
        font.setPointSize(7);
        return font;
    }
    int percentageMargin() const override { return 10; }
};

constexpr int cellWidth = 60;

// The load column's cell of `text`, painted alone through the delegate on a transparent image.
QImage paintLoadCell(const QString& text)
{
    ServesSelectionTreeWidget tree;
    Provider provider;
    VpnPointItemDelegate delegate(&tree, &provider);
    tree.setColumnCount(3);
    auto* item = new QTreeWidgetItem(&tree, 1);
    item->setText(2, text);

    QImage image(cellWidth, VpnPointItemDelegate::rowHeight(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.initFrom(&tree);
    option.rect = image.rect();
    option.font = tree.font();
    delegate.paint(&painter, option, tree.model()->index(0, 2));
    painter.end();
    return image;
}

int countPixels(const QImage& image, const QColor& color, int tolerance)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (colorsNear(image.pixelColor(x, y), color, tolerance))
                ++count;
        }
    }
    return count;
}

} // namespace

class TestServerListPainting : public QObject {
    Q_OBJECT

private slots:
    void badgeColourFollowsTheLoad_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QColor>("expected");
        QTest::newRow("0") << "0%" << QColor(Colors::loadLow);
        QTest::newRow("25") << "25%" << QColor(Colors::loadLow);
        QTest::newRow("26") << "26%" << QColor(Colors::loadMedium);
        QTest::newRow("50") << "50%" << QColor(Colors::loadMedium);
        QTest::newRow("51") << "51%" << QColor(Colors::loadHigh);
        QTest::newRow("100") << "100%" << QColor(Colors::loadHigh);
    }

    void badgeColourFollowsTheLoad()
    {
        QFETCH(QString, text);
        QFETCH(QColor, expected);
        const QImage image = paintLoadCell(text);
        // Inside the capsule, left of where the text starts, on the middle row.
        const QColor actual = image.pixelColor(5, VpnPointItemDelegate::rowHeight() / 2);
        QVERIFY2(colorsNear(actual, expected, 0), qPrintable(colorMismatch(actual, expected)));
        // The capsule ends one pixel past the column width given by the page, and the text in it
        // is white.
        QVERIFY(countPixels(image, Qt::white, 40) > 5);
        const int right = 1 + 48 + 2;
        QCOMPARE(image.pixelColor(right + 1, VpnPointItemDelegate::rowHeight() / 2).alpha(), 0);
        QVERIFY(image.pixelColor(right - 3, VpnPointItemDelegate::rowHeight() / 2).alpha() > 0);
    }

    void textThatIsNoLoadDrawsNoBadge_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("letters") << "abc%";
        QTest::newRow("only the sign") << "%";
        QTest::newRow("empty") << "";
        QTest::newRow("no sign") << "37";
    }

    void textThatIsNoLoadDrawsNoBadge()
    {
        QFETCH(QString, text);
        const QImage image = paintLoadCell(text);
        for (const char* colour : {Colors::loadLow, Colors::loadMedium, Colors::loadHigh})
            QCOMPARE(countPixels(image, QColor(colour), 0), 0);
    }

    void badgeTextIsNudgedByNumberOfDigits()
    {
        ServesSelectionTreeWidget tree;
        Provider provider;
        const VpnPointItemDelegate delegate(&tree, &provider);
        const QRect cell(100, 200, cellWidth, 40);
        const auto x = [&](int value) { return delegate.percentageTextOrigin(cell, value).x(); };

        QCOMPARE(x(10), cell.left() + provider.percentageMargin());
        QCOMPARE(x(99), x(10));
        QCOMPARE(x(5) - x(10), 1);
        QCOMPARE(x(100) - x(99), -5);
        QCOMPARE(x(150) - x(99), -1);
        // The text sits on one baseline inside the capsule, whatever the value.
        const int baseline = delegate.percentageTextOrigin(cell, 5).y();
        QCOMPARE(delegate.percentageTextOrigin(cell, 100).y(), baseline);
        const QRect badge = delegate.percentageBadgeRect(cell);
        QVERIFY(baseline > badge.top() && baseline < badge.bottom());
        QCOMPARE(badge.left(), cell.left() + 1);
        QCOMPARE(badge.width(), provider.thirdColumnWidth() + 2);
        QCOMPARE(badge.center().y() - cell.top(), (40 - 1) / 2);
    }

    void richTextIsRenderedNotShownAsMarkup()
    {
        ServesSelectionTreeWidget tree;
        Provider provider;
        tree.setItemDelegate(new VpnPointItemDelegate(&tree, &provider, &tree));
        tree.setColumnCount(1);
        tree.setHeaderHidden(true);
        auto* plain = new QTreeWidgetItem(&tree, 1);
        plain->setText(0, QStringLiteral("<span style=\"color:#FF0000;\">Mmmm</span>"));
        tree.resize(300, 100);
        tree.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tree));
        const QImage image = tree.viewport()->grab().toImage();
        // The span's colour reaches the screen: the markup was interpreted.
        QVERIFY(countPixels(image, QColor(255, 0, 0), 60) > 10);
    }

    // A line closes every 40-pixel row, child rows included.
    void separatorUnderEveryRow()
    {
        ServesSelectionTreeWidget tree;
        Provider provider;
        tree.setItemDelegate(new VpnPointItemDelegate(&tree, &provider, &tree));
        tree.setColumnCount(3);
        tree.setHeaderHidden(true);
        auto* parent = new QTreeWidgetItem(&tree, 0);
        new QTreeWidgetItem(parent, 1);
        parent->setExpanded(true);
        new QTreeWidgetItem(&tree, 1);
        tree.resize(300, 300);
        tree.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tree));

        const QImage image = tree.viewport()->grab().toImage();
        const QColor line(Colors::separator);
        for (int bottom : {39, 79, 119}) {
            for (int x : {0, 150, 299 - 2 * tree.frameWidth()}) {
                const QColor actual = image.pixelColor(x, bottom);
                QVERIFY2(colorsNear(actual, line, 0),
                         qPrintable(QStringLiteral("(%1, %2): ").arg(x).arg(bottom) +
                                    colorMismatch(actual, line)));
            }
        }
        // Below the last row there is no line.
        QVERIFY(!colorsNear(image.pixelColor(150, 159), line, 0));
        QVERIFY(!colorsNear(image.pixelColor(150, 20), line, 0));
    }

    void ownLookReplacesThePagesSetUp()
    {
        ServesSelectionTreeWidget tree;
        tree.setStyleSheet(QStringLiteral("QTreeWidget { border: transparent;}"));
        tree.setIndentation(10);
        tree.resize(200, 100);
        tree.show();
        QVERIFY(QTest::qWaitForWindowExposed(&tree));
        QCOMPARE(tree.styleSheet(), ServesSelectionTreeWidget::ownStyleSheet());
        QCOMPARE(tree.indentation(), 0);
        QVERIFY(tree.styleSheet().contains("QTreeView::item { height: 42px;}"));
    }
};

TAVERO_TEST_GUI_MAIN(TestServerListPainting)
#include "tst_serverlistpainting.moc"
