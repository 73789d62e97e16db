#pragma once

#include "shotregistry.h"

#include <QDir>
#include <QTranslator>

namespace tavero::screenshots {

// Renders registered pages to PNG files named "<page>-<state>-<language>.png": for each language
// it installs the embedded catalogue ":/translations/<language>" and the matching long release
// date (the application property "AppLocaleDateString"), then builds, shows and grabs the widget
// of every state.
class ShotRunner {
public:
    explicit ShotRunner(const QString& outputDirectory);
    ~ShotRunner();

    static QStringList knownLanguages();

    // False when any picture could not be made; errors() says which and why.
    bool run(const std::vector<const ShotRegistry::Page*>& pages, const QStringList& languages);

    const QStringList& written() const { return m_written; }
    const QStringList& errors() const { return m_errors; }

private:
    bool useLanguage(const QString& language);
    void shoot(const ShotRegistry::Page& page, const QString& state, const QString& language);

    QDir m_outputDirectory;
    QTranslator m_translator;
    bool m_translatorInstalled = false;
    QStringList m_written;
    QStringList m_errors;
};

} // namespace tavero::screenshots
