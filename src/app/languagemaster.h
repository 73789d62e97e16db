#pragma once

#include "app/languageinfo.h"

#include <QLocale>
#include <QObject>
#include <QTranslator>
#include <QVector>

namespace tavero {

class ISettings;

// Chooses the interface language at start-up and switches it on request: installs the matching
// embedded catalogue into the application through one translator that is reused for every switch,
// stores the choice in the settings and publishes the build date in the language's long date
// format as the application property "AppLocaleDateString". Main thread only.
class LanguageMaster : public QObject {
public:
    // `systemLanguage` is the language the start-up choice falls back to when nothing usable is
    // stored; the product passes the system's. No language is installed yet.
    explicit LanguageMaster(ISettings& settings,
                            QLocale::Language systemLanguage = QLocale::system().language());
    ~LanguageMaster() override;
    Q_DISABLE_COPY_MOVE(LanguageMaster)

    // Start-up choice: a "language.txt" hand-over file in the working directory wins (its content
    // exactly as read must be a code; the file is deleted either way and nothing else is
    // consulted), then the stored choice, then the system language, then English.
    void initStartupLanguage();

    // Unknown codes and languages are ignored.
    void changeLanguageByName(const QString& code);
    void changeLanguage(QLocale::Language language);
    // Stores the choice, swaps the catalogue and publishes the localised build date.
    void changeLanguage(const LanguageInfo& info);
    // Replaces the installed catalogue; the translator is installed again even when the catalogue
    // failed to load (the interface then shows the source texts).
    void reinstallTranslator(const LanguageInfo& info);
    // "AppLocaleDateString" := "AppBuildDate" (yyyy-MM-dd) in the locale's long date format.
    void changeLocale(const QLocale& locale);

    // -1 when no entry matches; codes are case-sensitive.
    int getLanguageIndex(QLocale::Language language) const;
    int getLanguageIndexByName(const QString& code) const;
    // English, Russian, French, German, Spanish, in this order.
    const QVector<LanguageInfo>& getLanguageInfos() const { return m_languages; }

private:
    ISettings& m_settings;
    const QLocale::Language m_systemLanguage;
    // Owned here rather than by the application, so no translator outlives its manager.
    QTranslator m_translator;
    QVector<LanguageInfo> m_languages;
};

} // namespace tavero
