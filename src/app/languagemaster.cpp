#include "app/languagemaster.h"

#include "app/isettings.h"

#include <QCoreApplication>
#include <QDate>
#include <QFile>
#include <QTextStream>
#include <QtDebug>

namespace tavero {

namespace {
const QString handOverFileName = QStringLiteral("language.txt");
}

LanguageMaster::LanguageMaster(ISettings& settings, QLocale::Language systemLanguage)
    : m_settings(settings)
    , m_systemLanguage(systemLanguage)
    , m_languages{
          {QStringLiteral("eng"), QStringLiteral("English"),
           QLocale(QLocale::English, QLocale::UnitedStates), QStringLiteral(":/translations/eng")},
          {QStringLiteral("rus"), QStringLiteral("Русский"),
           QLocale(QLocale::Russian, QLocale::Russia), QStringLiteral(":/translations/rus")},
          {QStringLiteral("fra"), QStringLiteral("Français"),
           QLocale(QLocale::French, QLocale::France), QStringLiteral(":/translations/fra")},
          {QStringLiteral("ger"), QStringLiteral("Deutsche"),
           QLocale(QLocale::German, QLocale::Germany), QStringLiteral(":/translations/ger")},
          {QStringLiteral("spa"), QStringLiteral("Español"),
           QLocale(QLocale::Spanish, QLocale::Spain), QStringLiteral(":/translations/spa")},
      }
{}

LanguageMaster::~LanguageMaster()
{
    QCoreApplication::removeTranslator(&m_translator);
}

void LanguageMaster::initStartupLanguage()
{
    // An installer hands over the language chosen during installation; it wins once.
    QFile handOver(handOverFileName);
    if (handOver.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream stream(&handOver);
        stream.setCodec("UTF-8");
        const QString content = stream.readAll();
        handOver.close();
        qDebug() << "check langs";
        if (getLanguageIndexByName(content) != -1)
            changeLanguageByName(content);
        handOver.remove();
        return;
    }

    const QString stored = m_settings.getSelectedLanguage();
    qDebug() << "settings lang: " << stored
             << "has index in master:" << getLanguageIndexByName(stored);
    if (getLanguageIndexByName(stored) == -1)
        changeLanguage(m_systemLanguage);
    else
        changeLanguageByName(stored);

    const QString afterChoice = m_settings.getSelectedLanguage();
    qDebug() << "settings lang: " << afterChoice
             << "has index in master:" << getLanguageIndexByName(afterChoice);
    if (getLanguageIndexByName(afterChoice) == -1)
        changeLanguage(QLocale::English);
    qDebug() << " 167 " << m_settings.getSelectedLanguage();
}

void LanguageMaster::changeLanguageByName(const QString& code)
{
    const int index = getLanguageIndexByName(code);
    if (index != -1)
        changeLanguage(m_languages.at(index));
}

void LanguageMaster::changeLanguage(QLocale::Language language)
{
    const int index = getLanguageIndex(language);
    if (index != -1)
        changeLanguage(m_languages.at(index));
}

void LanguageMaster::changeLanguage(const LanguageInfo& info)
{
    // A copy: `info` may be an element of the table, and the settings call may re-enter.
    const LanguageInfo language = info;
    m_settings.setSelectedLanguage(language.code);
    reinstallTranslator(language);
    changeLocale(language.locale);
}

void LanguageMaster::reinstallTranslator(const LanguageInfo& info)
{
    QCoreApplication::removeTranslator(&m_translator);
    // A non-null empty suffix keeps the loader from trying "<path>.qm" first.
    const bool loaded =
        m_translator.load(info.translationPath, QString(), QString(), QStringLiteral(""));
    qDebug() << (loaded ? "lib tr true" : "lib tr false");
    QCoreApplication::installTranslator(&m_translator);
}

void LanguageMaster::changeLocale(const QLocale& locale)
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (!application)
        return;
    const QDate buildDate =
        QDate::fromString(application->property("AppBuildDate").toString(), Qt::ISODate);
    application->setProperty("AppLocaleDateString",
                             locale.toString(buildDate, QLocale::LongFormat));
}

int LanguageMaster::getLanguageIndex(QLocale::Language language) const
{
    for (int i = 0; i < m_languages.size(); ++i) {
        if (m_languages.at(i).locale.language() == language)
            return i;
    }
    return -1;
}

int LanguageMaster::getLanguageIndexByName(const QString& code) const
{
    for (int i = 0; i < m_languages.size(); ++i) {
        if (m_languages.at(i).code == code)
            return i;
    }
    return -1;
}

} // namespace tavero
