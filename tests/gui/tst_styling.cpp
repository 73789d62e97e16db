#include "gui/shell/colors.h"
#include "gui/shell/fontsizetable.h"
#include "gui/shell/qttools.h"
#include "support/testmain.h"

#include <QLabel>
#include <QPushButton>

class TestStyling : public QObject {
    Q_OBJECT
private slots:
    void rescaleSize_data()
    {
        QTest::addColumn<int>("designSize");
        QTest::addColumn<double>("shownSize");
        QTest::newRow("14") << 14 << 10.5;
        QTest::newRow("18") << 18 << 13.5;
        QTest::newRow("smallest") << 8 << 6.0;
        QTest::newRow("largest") << 48 << 36.0;
        QTest::newRow("10") << 10 << 7.5;
        QTest::newRow("26") << 26 << 20.0;
        QTest::newRow("13") << 13 << 10.0;
        QTest::newRow("16") << 16 << 12.0;
        QTest::newRow("0") << 0 << 1.0;
        QTest::newRow("negative") << -14 << 1.0;
        QTest::newRow("below the table") << 7 << 1.0;
        QTest::newRow("above the table") << 49 << 1.0;
        // The sizes between 25 and 47 that no layout uses.
        for (int absent : {25, 27, 28, 30, 31, 33, 34, 39, 41, 43, 44, 46, 47}) {
            QTest::newRow(qPrintable(QString("absent %1").arg(absent))) << absent << 1.0;
        }
    }

    void rescaleSize()
    {
        QFETCH(int, designSize);
        QFETCH(double, shownSize);
        QCOMPARE(FontSizeTable::rescaleSize(designSize), shownSize);
    }

    void tableCoversEveryUsedSizeWithGrowingSizes()
    {
        const QMap<int, double> sizes = FontSizeTable::sizes();
        QCOMPARE(sizes.size(), 28);
        QCOMPARE(sizes.firstKey(), 8);
        QCOMPARE(sizes.lastKey(), 48);
        for (int size = 8; size <= 24; ++size) {
            QVERIFY2(sizes.contains(size), qPrintable(QString::number(size)));
        }
        double previous = 0;
        for (double shown : sizes) {
            QVERIFY(shown > previous);
            previous = shown;
        }
    }

    void rescaleSizeTreatsANonPositiveEntryAsMissing()
    {
        const QMap<int, double> table = {{14, 10.5}, {15, 0.0}, {16, -2.0}};
        QCOMPARE(FontSizeTable::rescaleSize(table, 14), 10.5);
        QCOMPARE(FontSizeTable::rescaleSize(table, 15), 1.0);
        QCOMPARE(FontSizeTable::rescaleSize(table, 16), 1.0);
    }

    void paintWidgetFillsTheBackground()
    {
        QtTools::paintWidget(nullptr, Qt::white);
        QWidget widget;
        widget.resize(20, 20);
        const QColor text = widget.palette().color(QPalette::WindowText);
        QtTools::paintWidget(&widget, QColor(Colors::connectButton));
        QVERIFY(widget.autoFillBackground());
        QCOMPARE(widget.palette().color(QPalette::Window), QColor(Colors::connectButton));
        QCOMPARE(widget.palette().color(QPalette::WindowText), text);
        QCOMPARE(widget.grab().toImage().pixelColor(10, 10), QColor(Colors::connectButton));
    }

    void setLabelFontColorChangesOnlyTheText()
    {
        QtTools::setLabelFontColor(nullptr, Qt::red);
        QLabel label("Your IP:");
        const QColor window = label.palette().color(QPalette::Window);
        QtTools::setLabelFontColor(&label, QColor(Colors::caption));
        QCOMPARE(label.palette().color(QPalette::WindowText), QColor(Colors::caption));
        QCOMPARE(label.palette().color(QPalette::Window), window);
    }

    void setButtonTextPadding_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("pointSize");
        QTest::addColumn<int>("padding");
        QTest::newRow("connect") << "Connect" << 13 << 36;
        QTest::newRow("large font") << "Disconnect" << 30 << 36;
        QTest::newRow("no padding") << "Login" << 10 << 0;
        QTest::newRow("empty text") << "" << 12 << 5;
    }

    void setButtonTextPadding()
    {
        QFETCH(QString, text);
        QFETCH(int, pointSize);
        QFETCH(int, padding);
        QtTools::setButtonTextPadding(nullptr, padding);
        QPushButton button(text);
        QFont font = button.font();
        font.setPointSize(pointSize);
        button.setFont(font);
        button.setMinimumHeight(56);
        QtTools::setButtonTextPadding(&button, padding);
        QCOMPARE(button.minimumWidth(), QFontMetrics(font).horizontalAdvance(text) + 2 * padding);
        QCOMPARE(button.minimumHeight(), 56);
    }

    void setSemiboldFontKeepsTheRestOfTheFont()
    {
        QFont font("Montserrat", 17);
        font.setItalic(true);
        QtTools::setSemiboldFont(font);
        QCOMPARE(font.weight(), 63);
        QCOMPARE(font.pointSize(), 17);
        QVERIFY(font.italic());

        QtTools::setSemiboldFont(static_cast<QWidget*>(nullptr));
        QLabel label;
        QFont labelFont = label.font();
        labelFont.setPointSize(21);
        label.setFont(labelFont);
        QtTools::setSemiboldFont(&label);
        QCOMPARE(label.font().weight(), 63);
        QCOMPARE(label.font().pointSize(), 21);
    }

    void setBoldFontSetsAndClears()
    {
        QtTools::setBoldFont(nullptr, true);
        QPushButton button("Connect");
        QFont font = button.font();
        font.setPointSize(19);
        button.setFont(font);
        QtTools::setBoldFont(&button, true);
        QVERIFY(button.font().bold());
        QCOMPARE(button.font().pointSize(), 19);
        QtTools::setBoldFont(&button, false);
        QVERIFY(!button.font().bold());
        QCOMPARE(button.font().weight(), int(QFont::Normal));
        QCOMPARE(button.font().pointSize(), 19);
    }

    void paletteNamesValidColours()
    {
        for (const char* colour : {Colors::windowBackground,
                                   Colors::white,
                                   Colors::bottomBandGradient,
                                   Colors::loginText,
                                   Colors::ipAddress,
                                   Colors::caption,
                                   Colors::countryName,
                                   Colors::loginFieldText,
                                   Colors::fieldBorder,
                                   Colors::fieldShadow,
                                   Colors::separator,
                                   Colors::connectButton,
                                   Colors::connectButtonHover,
                                   Colors::protectedBadge,
                                   Colors::disconnectButton,
                                   Colors::disconnectButtonHover,
                                   Colors::unprotectedBadge,
                                   Colors::trayMenuSelection,
                                   Colors::loadLow,
                                   Colors::loadMedium,
                                   Colors::loadHigh}) {
            QVERIFY2(QColor(colour).isValid() && qstrlen(colour) == 7, colour);
        }
    }
};

TAVERO_TEST_GUI_MAIN(TestStyling)
#include "tst_styling.moc"
