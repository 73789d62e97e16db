#include "shotrunner.h"

#include <QApplication>
#include <QFile>
#include <QLocale>
#include <QPixmap>
#include <QWidget>

namespace tavero::screenshots {

ShotRunner::ShotRunner(const QString& outputDirectory)
    : m_outputDirectory(outputDirectory)
    , m_languages(m_settings)
{}

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
    const int index = m_languages.getLanguageIndexByName(language);
    if (index < 0 || !QFile::exists(m_languages.getLanguageInfos().at(index).translationPath)) {
        m_errors << QStringLiteral("no catalogue for %1").arg(language);
        return false;
    }
    m_languages.changeLanguageByName(language);
    QLocale::setDefault(m_languages.getLanguageInfos().at(index).locale);
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
