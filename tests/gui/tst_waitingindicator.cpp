#include "gui/pages/waitingindicator.h"
#include "gui/pages/waitingplate.h"
#include "support/testmain.h"
#include "support/widgetpainting.h"

#include <QImage>
#include <QLayout>

using Gui::WaitingIndicator;
using Gui::WaitingPlate;
using tavero::test::colorMismatch;
using tavero::test::colorsNear;
using tavero::test::paintedImage;

namespace {

bool isFullyTransparent(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0)
                return false;
        }
    }
    return true;
}

bool near(int actual, int expected, int tolerance)
{
    return std::abs(actual - expected) <= tolerance;
}

} // namespace

// The spinner's measures, its animation and its painting, and the plate that carries it.
class TestWaitingIndicator : public QObject {
    Q_OBJECT

private slots:
    void geometry_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("outer");
        QTest::addColumn<int>("inner");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("corner");

        // Up to 32 pixels the capsules are half as wide as long, above that 0.4.
        QTest::newRow("32x32") << QSize(32, 32) << 15 << 7 << 8 << 4 << 2;
        QTest::newRow("33x33") << QSize(33, 33) << 16 << 8 << 8 << 3 << 1;
        QTest::newRow("48x48") << QSize(48, 48) << 23 << 11 << 12 << 4 << 2;
        QTest::newRow("smaller side counts") << QSize(48, 100) << 23 << 11 << 12 << 4 << 2;
        QTest::newRow("wide but only 32 high") << QSize(200, 32) << 15 << 7 << 8 << 4 << 2;
        QTest::newRow("3x3") << QSize(3, 3) << 1 << 0 << 1 << 0 << 0;
        QTest::newRow("2x2") << QSize(2, 2) << 0 << 0 << 0 << 0 << 0;
        QTest::newRow("1x1") << QSize(1, 1) << 0 << 0 << 0 << 0 << 0;
        QTest::newRow("empty") << QSize(0, 0) << 0 << 0 << 0 << 0 << 0;
    }

    void geometry()
    {
        QFETCH(QSize, size);
        const WaitingIndicator::Geometry g = WaitingIndicator::geometryFor(size);
        QTEST(g.outerRadius, "outer");
        QTEST(g.innerRadius, "inner");
        QTEST(g.capsuleLength, "length");
        QTEST(g.capsuleWidth, "width");
        QTEST(g.cornerRadius, "corner");
    }

    void tinyIndicatorsPaintNothingWithoutFailing_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("2x2") << QSize(2, 2);
        QTest::newRow("1x1") << QSize(1, 1);
        QTest::newRow("1x40") << QSize(1, 40);
    }

    void tinyIndicatorsPaintNothingWithoutFailing()
    {
        QFETCH(QSize, size);
        WaitingIndicator indicator;
        indicator.resize(size);
        for (int step = 0; step < 9; ++step) {
            QVERIFY(isFullyTransparent(paintedImage(indicator)));
            indicator.advance();
        }
        // And the real paint path of a shown widget.
        indicator.show();
        QVERIFY(QTest::qWaitForWindowExposed(&indicator));
        indicator.repaint();
    }

    void eachStepTurnsByFortyFiveDegrees()
    {
        WaitingIndicator indicator;
        QCOMPARE(indicator.angle(), 0);
        QList<int> angles;
        for (int step = 0; step < 9; ++step) {
            indicator.advance();
            angles << indicator.angle();
        }
        QCOMPARE(angles, (QList<int>{45, 90, 135, 180, 225, 270, 315, 0, 45}));
    }

    void spinsOnItsOwnTimer()
    {
        WaitingIndicator indicator;
        QTRY_VERIFY(indicator.angle() != 0);
        QCOMPARE(indicator.angle() % WaitingIndicator::angleStep, 0);
    }

    // At angle 0 the brightest capsule points up (with the faintest one on top of it) and the
    // others trail counter-clockwise; one step later the brightest points up-right.
    void brightestCapsuleLeadsClockwise()
    {
        WaitingIndicator indicator;
        indicator.resize(48, 48);
        // Capsules of 4 × 12 pixels between radius 11 and 23; sample 17 pixels from the centre.
        const QPoint up(24, 24 - 17);
        const QPoint upRight(24 + 12, 24 - 12);
        const int trailingAlpha = qRound(255 * (1.0 - 7.0 / 9)); // capsule 7 at +45°
        const int secondAlpha = qRound(255 * (1.0 - 1.0 / 9));

        QImage image = paintedImage(indicator);
        QVERIFY2(near(qAlpha(image.pixel(up)), 255, 2),
                 qPrintable(QString::number(qAlpha(image.pixel(up)))));
        QVERIFY(near(qAlpha(image.pixel(upRight)), trailingAlpha, 3));
        const QColor lead = image.pixelColor(up);
        QCOMPARE(lead.rgb(), QColor(Qt::gray).rgb());

        indicator.advance();
        image = paintedImage(indicator);
        QVERIFY2(near(qAlpha(image.pixel(up)), secondAlpha, 3),
                 qPrintable(QString::number(qAlpha(image.pixel(up)))));
        QVERIFY(near(qAlpha(image.pixel(upRight)), 255, 2));
        // Nothing is drawn at the centre, inside the inner radius.
        QCOMPARE(qAlpha(image.pixel(24, 24)), 0);
    }

    void plateCoversItsAreaTranslucentlyWithTheIndicatorCentred()
    {
        WaitingPlate plate;
        plate.resize(489, 445);
        plate.layout()->activate();

        WaitingIndicator* indicator = plate.findChild<WaitingIndicator*>("indicator_");
        QVERIFY(indicator);
        QCOMPARE(plate.indicator(), indicator);
        QCOMPARE(indicator->size(), QSize(48, 48));
        const QPoint offset = indicator->geometry().center() - plate.rect().center();
        QVERIFY2(offset.manhattanLength() <= 2,
                 qPrintable(QStringLiteral("%1,%2").arg(offset.x()).arg(offset.y())));

        const QImage image = paintedImage(plate);
        for (const QPoint& corner : {QPoint(0, 0), QPoint(488, 444), QPoint(100, 300)}) {
            const QColor expected(0xF1, 0xF4, 0xFB, 225);
            const QColor color = image.pixelColor(corner);
            QVERIFY2(colorsNear(color, expected, 1), qPrintable(colorMismatch(color, expected)));
        }
        // The spinner is painted over the plate: its leading capsule is grey and opaque.
        const QPoint lead = indicator->geometry().topLeft() + QPoint(24, 7);
        QCOMPARE(image.pixelColor(lead).alpha(), 255);
        QVERIFY(image.pixelColor(lead).red() < 0xC0);
    }

    void plateFollowsItsSize()
    {
        WaitingPlate plate;
        plate.resize(360, 550);
        plate.layout()->activate();
        const QPoint offset = plate.indicator()->geometry().center() - plate.rect().center();
        QVERIFY(offset.manhattanLength() <= 2);
        QCOMPARE(qAlpha(paintedImage(plate).pixel(359, 549)), 225);
    }
};

TAVERO_TEST_GUI_MAIN(TestWaitingIndicator)
#include "tst_waitingindicator.moc"
