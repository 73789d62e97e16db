#pragma once

#include <QLocale>
#include <QString>

namespace tavero {

// One interface language the client speaks.
struct LanguageInfo {
    QString code;            // three letters ("eng"); also what the settings store as the choice
    QString displayName;     // the language's own name, shown in the language list
    QLocale locale;          // for dates and for matching the system language
    QString translationPath; // resource path of the compiled catalogue, used exactly as given
};

} // namespace tavero
