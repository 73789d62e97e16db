#include "shotrunner.h"

#include <QApplication>
#include <QDate>
#include <QLocale>
#include <QPixmap>
#include <QWidget>

namespace tavero::screenshots {

namespace {

QLocale localeFor(const QString& language)
{
    if (language == QLatin1String("fra"))
        return QLocale(QLocale::French, QLocale::France);
    if (language == QLatin1String("ger"))
        return QLocale(QLocale::German, QLocale::Germany);
    if (language == QLatin1String("rus"))
        return QLocale(QLocale::Russian, QLocale::Russia);
    if (language == QLatin1String("spa"))
        return QLocale(QLocale::Spanish, QLocale::Spain);
    return QLocale(QLocale::English, QLocale::UnitedStates);
}

} // namespace

ShotRunner::ShotRunner(const QString& outputDirectory)
    : m_outputDirectory(outputDirectory)
{}

ShotRunner::~ShotRunner()
{
    if (m_translatorInstalled)
        QCoreApplication::removeTranslator(&m_translator);
}

QStringList ShotRunner::knownLanguages()
{
    return {QStringLiteral("eng"), QStringLiteral("fra"), QStringLiteral("ger"),
            QStringLiteral("rus"), QStringLiteral("spa")};
}

bool ShotRunner::run(const std::vector<const ShotRegistry::Page*>& pages,
                     const QStringList& languages)
{
    if (!m_outputDirectory.mkpath(QStringLiteral("."))) {
        m_errors << QStringLiteral("cannot create the directory %1").arg(m_outputDirectory.path());
        return false;
    }
    for (const QString& language : languages) {
        if (!useLanguage(language))
            continue;
        for (const ShotRegistry::Page* page : pages) {
            for (const QString& state : page->states)
                shoot(*page, state, language);
        }
    }
    return m_errors.isEmpty();
}

bool ShotRunner::useLanguage(const QString& language)
{
    if (m_translatorInstalled) {
        QCoreApplication::removeTranslator(&m_translator);
        m_translatorInstalled = false;
    }
    if (!m_translator.load(QStringLiteral(":/translations/") + language)) {
        m_errors << QStringLiteral("no catalogue :/translations/%1").arg(language);
        return false;
    }
    QCoreApplication::installTranslator(&m_translator);
    m_translatorInstalled = true;

    const QLocale locale = localeFor(language);
    QLocale::setDefault(locale);
    const QDate buildDate =
        QDate::fromString(qApp->property("AppBuildDate").toString(), Qt::ISODate);
    qApp->setProperty("AppLocaleDateString", locale.toString(buildDate, QLocale::LongFormat));
    return true;
}

void ShotRunner::shoot(const ShotRegistry::Page& page, const QString& state,
                       const QString& language)
{
    const QString name = QStringLiteral("%1-%2-%3.png").arg(page.name, state, language);
    std::unique_ptr<QWidget> widget = page.produce(state);
    if (!widget) {
        m_errors << QStringLiteral("%1: the page made no widget for the state \"%2\"")
                        .arg(page.name, state);
        return;
    }
    widget->show();
    // Let layouts, style sheets and the first paint settle before the picture is taken.
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    const QPixmap picture = widget->grab();
    const QString path = m_outputDirectory.filePath(name);
    if (picture.isNull() || !picture.save(path, "PNG")) {
        m_errors << QStringLiteral("%1: could not render or write %2").arg(page.name, path);
        return;
    }
    m_written << path;
}

} // namespace tavero::screenshots
