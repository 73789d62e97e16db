#include "gui/pages/aboutprogrammwindowswidget.h"
#include "gui/pages/splashscreen.h"
#include "support/messageboxdriver.h"
#include "support/testmain.h"

#include <QAbstractButton>
#include <QLabel>
#include <QRegularExpression>
#include <QTranslator>

using tavero::test::MessageBoxDriver;

namespace {

// Every text a user sees on the widget: window title, labels and buttons.
QStringList visibleTexts(const QWidget& widget)
{
    QStringList texts{widget.windowTitle()};
    for (const QLabel* label : widget.findChildren<QLabel*>())
        texts << label->text();
    for (const QAbstractButton* button : widget.findChildren<QAbstractButton*>())
        texts << button->text();
    texts.removeAll(QString());
    return texts;
}

QStringList untranslated(const QStringList& texts)
{
    static const QRegularExpression key(
        QStringLiteral("\\b(label|action|title|message|warning|body)\\.[a-z_]+"));
    QStringList result;
    for (const QString& text : texts) {
        if (key.match(text).hasMatch())
            result << text;
    }
    return result;
}

} // namespace

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
        QVERIFY2(untranslated(texts).isEmpty(), qPrintable(untranslated(texts).join(" | ")));

        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        about.showYouHaveTheLatestVersion();
        QCOMPARE(driver.seen().size(), 1);
        const QStringList boxTexts{driver.seen().first().title, driver.seen().first().text};
        QVERIFY2(untranslated(boxTexts).isEmpty(), qPrintable(boxTexts.join(" | ")));
    }

    void splashPageIsFullyTranslated()
    {
        Gui::SplashScreen splash;
        const QStringList texts = visibleTexts(splash);
        QCOMPARE(texts.size(), 1);
        QVERIFY2(untranslated(texts).isEmpty(), qPrintable(texts.join(" | ")));
    }
};

TAVERO_TEST_GUI_MAIN(TestPageTranslations)
#include "tst_pagetranslations.moc"
