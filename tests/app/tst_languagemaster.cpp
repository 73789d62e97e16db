// The language manager against the embedded catalogues: the start-up precedence (hand-over file,
// stored choice, system language, English), switching, and the localised build date.
#include "app/languagemaster.h"
#include "app/settings.h"
#include "support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using tavero::LanguageMaster;
using tavero::Settings;

namespace {

// A text every catalogue translates, and its translation per language code.
const char probeContext[] = "SettingsDialog";
const char probeKey[] = "label.common";

QString installedLanguage()
{
    const QString text = QCoreApplication::translate(probeContext, probeKey);
    static const QHash<QString, QString> byText = {{"Common", "eng"},
                                                   {"Général", "fra"},
                                                   {"Allgemein", "ger"},
                                                   {"Общие", "rus"},
                                                   {"General", "spa"}};
    if (text == QLatin1String(probeKey))
        return QString(); // no catalogue answers
    return byText.value(text, QStringLiteral("<unknown text %1>").arg(text));
}

} // namespace

Q_DECLARE_METATYPE(QLocale::Language)

class TestLanguageMaster : public QObject {
    Q_OBJECT

    QTemporaryDir m_workingDirectory;
    QString m_previousDirectory;

private slots:
    void initTestCase()
    {
        QVERIFY(m_workingDirectory.isValid());
        m_previousDirectory = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_workingDirectory.path()));
        QCoreApplication::instance()->setProperty("AppBuildDate", "2021-01-20");
    }

    void cleanupTestCase() { QDir::setCurrent(m_previousDirectory); }

    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        QFile::remove(QStringLiteral("language.txt"));
        QCoreApplication::instance()->setProperty("AppLocaleDateString", QVariant());
    }

    void startupChoice_data()
    {
        QTest::addColumn<QVariant>("handOver"); // file content; null: no file
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QLocale::Language>("system");
        QTest::addColumn<QString>("expectedStored");
        QTest::addColumn<QString>("expectedInstalled"); // empty: nothing installed

        const auto row = [](const char* name, const QVariant& handOver, const QString& stored,
                            QLocale::Language system, const QString& expectedStored,
                            const QString& expectedInstalled) {
            QTest::newRow(name) << handOver << stored << system << expectedStored
                                << expectedInstalled;
        };
        const QVariant none;
        row("fresh, system Italian falls back to English", none, "", QLocale::Italian, "eng",
            "eng");
        row("stored German wins over the system", none, "ger", QLocale::French, "ger", "ger");
        row("stored display name is not a code", none, "English", QLocale::Spanish, "spa", "spa");
        row("hand-over wins over the stored choice", QByteArray("spa"), "ger", QLocale::French,
            "spa", "spa");
        row("hand-over with a trailing line break switches nothing", QByteArray("spa\n"), "ger",
            QLocale::French, "ger", "");
        row("hand-over of an unknown code", QByteArray("ita"), "", QLocale::French, "", "");
    }

    void startupChoice()
    {
        QFETCH(QVariant, handOver);
        QFETCH(QString, stored);
        QFETCH(QLocale::Language, system);
        QFETCH(QString, expectedStored);
        QFETCH(QString, expectedInstalled);

        if (!handOver.isNull())
            QVERIFY(
                tavero::test::TestEnvironment::writeFile("language.txt", handOver.toByteArray()));
        Settings settings;
        settings.setSelectedLanguage(stored);

        {
            LanguageMaster master(settings, system);
            master.initStartupLanguage();

            QCOMPARE(installedLanguage(), expectedInstalled);
            QCOMPARE(settings.getSelectedLanguage(), expectedStored);
            QCOMPARE(Settings().getSelectedLanguage(), expectedStored); // saved, not just kept
            QVERIFY2(!QFile::exists(QStringLiteral("language.txt")),
                     "the hand-over file must be consumed");
            QCOMPARE(QCoreApplication::instance()->property("AppLocaleDateString").isValid(),
                     !expectedInstalled.isEmpty());
        }
        QCOMPARE(installedLanguage(), QString()); // the manager takes its translator along
    }

    // One translator serves every switch: after any number of switches (unknown names ignored) a
    // catalogue that fails to load leaves no earlier language answering.
    void reusesOneTranslator()
    {
        Settings settings;
        LanguageMaster master(settings, QLocale::English);
        for (const char* code : {"ger", "rus", "eng", "spa", "English", "FRA", ""})
            master.changeLanguageByName(QString::fromLatin1(code));
        master.changeLanguage(QLocale::Italian);
        QCOMPARE(installedLanguage(), QString("spa")); // unknown names change nothing

        tavero::LanguageInfo missing = master.getLanguageInfos().at(2);
        missing.translationPath = QStringLiteral(":/translations/none");
        master.changeLanguage(missing);
        QCOMPARE(installedLanguage(), QString());
        QCOMPARE(settings.getSelectedLanguage(), QString("fra")); // stored even so
        QVERIFY(QCoreApplication::instance()
                    ->property("AppLocaleDateString")
                    .toString()
                    .contains("janvier"));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestLanguageMaster)
#include "tst_languagemaster.moc"
