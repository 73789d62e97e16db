#pragma once

#include "app/languagemaster.h"
#include "app/settings.h"
#include "shotregistry.h"

#include <QDir>

namespace tavero::screenshots {

// Renders registered pages to PNG files named "<page>-<state>-<language>.png": for each language
// it switches the interface language the way the client does (the language manager installs the
// embedded catalogue and publishes the long release date "AppLocaleDateString"), then builds,
// shows and grabs the widget of every state. The language choice is stored in the settings, so
// main() points the settings store at a directory of its own.
class ShotRunner {
public:
    explicit ShotRunner(const QString& outputDirectory);

    static QStringList knownLanguages();

    // False when any picture could not be made; errors() says which and why.
    bool run(const std::vector<const ShotRegistry::Page*>& pages, const QStringList& languages);

    const QStringList& written() const { return m_written; }
    const QStringList& errors() const { return m_errors; }

private:
    bool useLanguage(const QString& language);
    void shoot(const ShotRegistry::Page& page, const QString& state, const QString& language);

    QDir m_outputDirectory;
    tavero::Settings m_settings;
    tavero::LanguageMaster m_languages;
    QStringList m_written;
    QStringList m_errors;
};

} // namespace tavero::screenshots
