#include "gui/pages/logobackgroundwidget.h"
#include "support/testmain.h"
#include "support/widgetpainting.h"

namespace {

enum class Mode { White, Dark, Gradient };

// Colours along a vertical gradient of `span` pixels starting at `start`, at pixel row y
// (sampled at the pixel's centre).
QColor between(const QColor& from, const QColor& to, double start, double span, int y)
{
    const double t = (y + 0.5 - start) / span;
    auto mix = [t](int a, int b) { return qRound(a + (b - a) * t); };
    return QColor(mix(from.red(), to.red()), mix(from.green(), to.green()),
                  mix(from.blue(), to.blue()), mix(from.alpha(), to.alpha()));
}

} // namespace

Q_DECLARE_METATYPE(Mode)

using tavero::test::colorMismatch;
using tavero::test::colorsNear;
using tavero::test::paintedImage;

// The band's three looks, sampled at chosen pixels of a 100 × 40 widget.
class TestLogoBackgroundWidget : public QObject {
    Q_OBJECT

private slots:
    void paintsTheExpectedColours_data()
    {
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QColor>("expected");
        QTest::addColumn<int>("tolerance");

        const QColor white("#ffffff");
        const QColor dark("#363a45");
        const QColor shadowStart("#E4E7ED");
        const QColor shadowEnd("#F0F3FA");
        // The shadow strip is the bottom 3 rows (37..39), whatever the band's colour.
        const QColor shadowTop = between(shadowStart, shadowEnd, 37, 3, 37);
        const QColor shadowBottom = between(shadowStart, shadowEnd, 37, 3, 39);

        QTest::newRow("white: middle") << Mode::White << QPoint(50, 20) << white << 0;
        QTest::newRow("white: top-left inside") << Mode::White << QPoint(1, 1) << white << 0;
        QTest::newRow("white: row above the shadow") << Mode::White << QPoint(50, 36) << white << 0;
        QTest::newRow("white: shadow top") << Mode::White << QPoint(50, 37) << shadowTop << 2;
        QTest::newRow("white: shadow bottom") << Mode::White << QPoint(50, 39) << shadowBottom << 2;
        QTest::newRow("white: shadow reaches the left edge")
            << Mode::White << QPoint(0, 38) << between(shadowStart, shadowEnd, 37, 3, 38) << 2;
        QTest::newRow("white: right edge") << Mode::White << QPoint(99, 20) << white << 0;

        QTest::newRow("dark: middle") << Mode::Dark << QPoint(50, 20) << dark << 0;
        QTest::newRow("dark: row above the shadow") << Mode::Dark << QPoint(50, 36) << dark << 0;
        QTest::newRow("dark: shadow top") << Mode::Dark << QPoint(50, 37) << shadowTop << 2;
        QTest::newRow("dark: shadow bottom") << Mode::Dark << QPoint(50, 39) << shadowBottom << 2;

        // #DCE2EF fading to transparent over the full height, no shadow.
        const QColor opaque("#DCE2EF");
        const QColor clear(220, 226, 239, 0);
        QTest::newRow("gradient: near the top")
            << Mode::Gradient << QPoint(50, 2) << between(opaque, clear, 0, 40, 2) << 3;
        QTest::newRow("gradient: middle")
            << Mode::Gradient << QPoint(50, 20) << between(opaque, clear, 0, 40, 20) << 3;
        QTest::newRow("gradient: quarter")
            << Mode::Gradient << QPoint(70, 30) << between(opaque, clear, 0, 40, 30) << 3;
    }

    void paintsTheExpectedColours()
    {
        QFETCH(Mode, mode);
        QFETCH(QPoint, point);
        QFETCH(QColor, expected);
        QFETCH(int, tolerance);

        LogoBackgroundWidget band;
        band.resize(100, 40);
        if (mode == Mode::Dark)
            band.setColor(QColor("#363a45"));
        if (mode == Mode::Gradient) {
            band.setColor(QColor("#DCE2EF"));
            band.setGradient();
        }

        const QColor actual = paintedImage(band).pixelColor(point);
        QVERIFY2(colorsNear(actual, expected, tolerance),
                 qPrintable(colorMismatch(actual, expected)));
    }

    void gradientFadesOutTowardsTheBottom()
    {
        LogoBackgroundWidget band;
        band.resize(100, 40);
        band.setGradient();
        const QImage image = paintedImage(band);
        int previous = 256;
        for (int y = 1; y < 39; ++y) {
            const int alpha = qAlpha(image.pixel(50, y));
            QVERIFY2(alpha < previous, qPrintable(QStringLiteral("row %1").arg(y)));
            previous = alpha;
        }
        QVERIFY(previous < 20);
    }
};

TAVERO_TEST_GUI_MAIN(TestLogoBackgroundWidget)
#include "tst_logobackgroundwidget.moc"
