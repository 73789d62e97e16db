#include "gui/pages/aboutprogrammwindowswidget.h"
#include "gui/pages/splashscreen.h"
#include "support/messageboxdriver.h"
#include "support/pagetexts.h"
#include "support/testmain.h"

#include <QTranslator>

using tavero::test::MessageBoxDriver;
using tavero::test::untranslatedKeys;
using tavero::test::visibleTexts;

// The embedded catalogues against the contexts these widgets translate in: a key that reaches the
// screen untranslated means the code and the catalogue disagree about a context or a key.
class TestPageTranslations : public QObject {
    Q_OBJECT

    QTranslator m_translator;

private slots:
    void init()
    {
        QFETCH_GLOBAL(QString, language);
        QVERIFY2(m_translator.load(":/translations/" + language), qPrintable(language));
        QCoreApplication::installTranslator(&m_translator);
        qApp->setProperty("AppLocaleDateString", "2021-01-20");
    }

    void cleanup() { QCoreApplication::removeTranslator(&m_translator); }

    void initTestCase_data()
    {
        QTest::addColumn<QString>("language");
        for (const char* language : {"eng", "fra", "ger", "rus", "spa"})
            QTest::newRow(language) << language;
    }

    void aboutPageIsFullyTranslated()
    {
        AboutProgrammWindowsWidget about;
        const QStringList texts = visibleTexts(about);
        QVERIFY(texts.size() >= 5);
        QVERIFY2(untranslatedKeys(texts).isEmpty(),
                 qPrintable(untranslatedKeys(texts).join(" | ")));

        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        about.showYouHaveTheLatestVersion();
        QCOMPARE(driver.seen().size(), 1);
        const QStringList boxTexts{driver.seen().first().title, driver.seen().first().text};
        QVERIFY2(untranslatedKeys(boxTexts).isEmpty(), qPrintable(boxTexts.join(" | ")));
    }

    void splashPageIsFullyTranslated()
    {
        Gui::SplashScreen splash;
        const QStringList texts = visibleTexts(splash);
        QCOMPARE(texts.size(), 1);
        QVERIFY2(untranslatedKeys(texts).isEmpty(), qPrintable(texts.join(" | ")));
    }
};

TAVERO_TEST_GUI_MAIN(TestPageTranslations)
#include "tst_pagetranslations.moc"
