// The status page's two button classes: hover reports that leave clicks intact, and the painted
// change-server button (flag box, elided name, chevron, height from the font).
#include "gui/pages/hoverpushbutton.h"
#include "gui/pages/serverselectionpushbutton.h"
#include "gui/shell/colors.h"
#include "support/testmain.h"
#include "support/widgetpainting.h"

#include <QSignalSpy>

using tavero::test::colorMismatch;
using tavero::test::colorsNear;
using tavero::test::paintedImage;

namespace {

// The server text is neutral grey (136, 136, 136), antialiased over white.
bool isTextGrey(const QColor& color)
{
    return color.alpha() == 255 && color.red() == color.green() && color.green() == color.blue() &&
           color.red() < 200;
}

bool isChevron(const QColor& color)
{
    return color.alpha() > 100 && colorsNear(color, QColor(Colors::caption), 40) &&
           color.blue() > color.red() + 10;
}

// Leftmost and rightmost columns holding pixels that `matches` between rows top and bottom;
// (-1, -1) when none.
template <typename Predicate>
QPair<int, int> columnsWith(const QImage& image, Predicate matches, int top, int bottom)
{
    int left = -1;
    int right = -1;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = top; y <= bottom; ++y) {
            if (matches(image.pixelColor(x, y))) {
                if (left < 0)
                    left = x;
                right = x;
                break;
            }
        }
    }
    return {left, right};
}

QPixmap solid(const QColor& color)
{
    QPixmap pixmap(60, 45);
    pixmap.fill(color);
    return pixmap;
}

} // namespace

class TestStatusButtons : public QObject {
    Q_OBJECT

private slots:
    void hoverButtonReportsEnterAndLeaveAndStillClicks()
    {
        Gui::HoverPushButton button;
        button.resize(80, 30);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        QSignalSpy entered(&button, &Gui::HoverPushButton::hoverEntered);
        QSignalSpy left(&button, &Gui::HoverPushButton::hoverLeaved);
        QSignalSpy clicked(&button, &QPushButton::clicked);

        QEvent enter(QEvent::Enter);
        QApplication::sendEvent(&button, &enter);
        QCOMPARE(entered.count(), 1);
        QCOMPARE(left.count(), 0);
        // The push button's own hover handling still ran.
        QVERIFY(button.underMouse() || button.testAttribute(Qt::WA_UnderMouse));

        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&button, &leave);
        QCOMPARE(left.count(), 1);
        QCOMPARE(entered.count(), 1);

        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
    }

    void longServerNameIsElidedBeforeTheChevron()
    {
        ServerSelectionPushButton button;
        button.resize(300, 56);
        const QString name = QStringLiteral("Netherlands Amsterdam very-long-server-name-") +
                             QString(40, QLatin1Char('x'));
        button.setServerText(name);
        QCOMPARE(button.serverText(), name);

        const QString shown = button.elidedServerText();
        QVERIFY(shown.endsWith(QChar(0x2026)));
        QVERIFY(shown.size() < name.size());
        QVERIFY(QFontMetrics(button.font()).horizontalAdvance(shown) <=
                button.availableTextWidth());
        QCOMPARE(button.availableTextWidth(), 300 - 20 - 15 - 68);

        // On screen: the grey text stays left of the chevron's box.
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        const QImage image = paintedImage(button);
        const auto [textLeft, textRight] =
            columnsWith(image, isTextGrey, button.height() / 2 - 4, button.height() / 2 + 4);
        QVERIFY(textLeft >= ServerSelectionPushButton::textLeft() - 1);
        QVERIFY2(textRight < 300 - 20 - 15, qPrintable(QString::number(textRight)));
    }

    void shortServerNameIsShownWhole()
    {
        ServerSelectionPushButton button;
        button.resize(300, 56);
        button.setServerText(QStringLiteral("de-1"));
        QCOMPARE(button.elidedServerText(), QStringLiteral("de-1"));
    }

    void flagIsDrawnInItsFrameAndCanBeBlanked()
    {
        ServerSelectionPushButton button;
        button.resize(300, 60);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        const int top = (button.height() - 22) / 2;
        const QPoint frame(20, top);       // the grey frame's top-left pixel
        const QPoint inside(30, top + 10); // inside the picture

        // No picture yet: the box is the frame colour throughout.
        QImage image = paintedImage(button);
        QVERIFY(colorsNear(image.pixelColor(inside), QColor(Colors::countryName), 0));

        button.setPixmap(solid(Qt::blue));
        QVERIFY(!button.isPixmapHidden());
        image = paintedImage(button);
        QVERIFY2(colorsNear(image.pixelColor(inside), Qt::blue, 0),
                 qPrintable(colorMismatch(image.pixelColor(inside), Qt::blue)));
        QVERIFY(colorsNear(image.pixelColor(frame), QColor(Colors::countryName), 0));
        // The box is 33 × 24 with its picture inset by one pixel at the left and top.
        QVERIFY(colorsNear(image.pixelColor(21, top + 1), Qt::blue, 0));
        QVERIFY(colorsNear(image.pixelColor(51, top + 22), Qt::blue, 0));
        QVERIFY(colorsNear(image.pixelColor(52, top + 10), QColor(Colors::countryName), 0));
        QVERIFY(colorsNear(image.pixelColor(30, top + 23), QColor(Colors::countryName), 0));

        // A flag that could not be had must not leave the previous country's flag behind.
        button.hidePixmap();
        QVERIFY(button.isPixmapHidden());
        image = paintedImage(button);
        QVERIFY(colorsNear(image.pixelColor(inside), QColor(Colors::countryName), 0));

        button.setPixmap(solid(Qt::red));
        QVERIFY(!button.isPixmapHidden());
        image = paintedImage(button);
        QVERIFY(colorsNear(image.pixelColor(inside), Qt::red, 0));
    }

    void capsuleIsWhiteWithTransparentCorners()
    {
        ServerSelectionPushButton button;
        button.resize(300, 60);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        const QImage image = paintedImage(button);
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(image.pixelColor(299, button.height() - 1).alpha(), 0);
        QVERIFY(colorsNear(image.pixelColor(150, 5), Qt::white, 0));
        // The chevron is drawn in its box at the right.
        const auto [chevronLeft, chevronRight] =
            columnsWith(image, isChevron, button.height() / 2 - 5, button.height() / 2 + 5);
        QVERIFY(chevronLeft >= 300 - 35);
        QVERIFY(chevronRight < 300 - 35 + 8);
    }

    void heightFollowsTheFont_data()
    {
        QTest::addColumn<int>("pixelSize");
        QTest::newRow("12 px") << 12;
        QTest::newRow("18 px") << 18;
        QTest::newRow("30 px") << 30;
    }

    void heightFollowsTheFont()
    {
        QFETCH(int, pixelSize);
        ServerSelectionPushButton button;
        button.setFixedHeight(56);
        QFont font = button.font();
        font.setPixelSize(pixelSize);
        button.setFont(font);
        QCOMPARE(button.height(), QFontMetrics(font).height() + 36);
        QCOMPARE(button.minimumHeight(), button.maximumHeight());
    }

    void styleSheetFontSizeSetsTheHeight()
    {
        ServerSelectionPushButton button;
        button.setStyleSheet(QStringLiteral("QPushButton {font-size: 18px;}"));
        button.ensurePolished();
        QCOMPARE(button.font().pixelSize(), 18);
        QCOMPARE(button.height(), QFontMetrics(button.font()).height() + 36);
    }
};

TAVERO_TEST_GUI_MAIN(TestStatusButtons)
#include "tst_statusbuttons.moc"
