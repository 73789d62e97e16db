#include "gui/pages/splashscreen.h"
#include "gui/pages/waitingindicator.h"
#include "support/maptranslator.h"
#include "support/testmain.h"
#include "support/widgetpainting.h"

#include <QLabel>

using tavero::test::colorMismatch;
using tavero::test::colorsNear;
using tavero::test::MapTranslator;

class TestSplashScreen : public QObject {
    Q_OBJECT

private slots:
    void retranslatesInTheFormsContext()
    {
        Gui::SplashScreen splash;
        auto* label = splash.findChild<QLabel*>("labelConnecting");
        QVERIFY(label);
        QCOMPARE(label->text(), QString("label.loading"));

        MapTranslator translator;
        translator.add("SplashScreen", "label.loading", "Loading...")
            .add("Gui::SplashScreen", "label.loading", "wrong context");
        QCoreApplication::installTranslator(&translator);
        splash.reTranslateUI();
        QCoreApplication::removeTranslator(&translator);

        QCOMPARE(label->text(), QString("Loading..."));
        QVERIFY(splash.windowTitle().isEmpty());
    }

    // The page paints its own vertical gradient (a style sheet on a widget subclass, which is
    // easily lost), whatever the window around it uses.
    void paintsItsGradientFromTopToBottom()
    {
        QWidget window;
        window.setStyleSheet("QWidget {background: #F1F4FB; border: transparent;}");
        auto* splash = new Gui::SplashScreen(&window);
        splash->setGeometry(0, 0, 345, 588);
        window.resize(345, 588);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        const QImage image = window.grab().toImage();
        const QColor top = image.pixelColor(5, 0);
        const QColor bottom = image.pixelColor(5, image.height() - 1);
        QVERIFY2(colorsNear(top, QColor(21, 36, 59), 2),
                 qPrintable(colorMismatch(top, QColor(21, 36, 59))));
        QVERIFY2(colorsNear(bottom, QColor(83, 75, 103), 2),
                 qPrintable(colorMismatch(bottom, QColor(83, 75, 103))));
    }

    void isAFramelessPageWithASpinner()
    {
        Gui::SplashScreen splash;
        QVERIFY(splash.windowFlags().testFlag(Qt::FramelessWindowHint));
        auto* indicator = splash.findChild<Gui::WaitingIndicator*>("indicator_1");
        QVERIFY(indicator);
        QCOMPARE(indicator->minimumSize(), QSize(48, 48));
        QCOMPARE(indicator->maximumSize(), QSize(48, 48));

        // As every page, it asks for the waiting plate through its base signals.
        Gui::AbstractContentPage& page = splash;
        QSignalSpy start(&page, &Gui::AbstractContentPage::aboutToStartWaiting);
        QSignalSpy stop(&page, &Gui::AbstractContentPage::aboutToStopWaiting);
        page.startWaiting();
        page.stopWaiting();
        QCOMPARE(start.count(), 1);
        QCOMPARE(stop.count(), 1);
    }
};

TAVERO_TEST_GUI_MAIN(TestSplashScreen)
#include "tst_splashscreen.moc"
