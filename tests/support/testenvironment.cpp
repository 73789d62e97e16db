#include "support/testenvironment.h"

#include <QDir>
#include <QSettings>

namespace tavero::test {

TestEnvironment::TestEnvironment()
    : m_home(QDir::tempPath() + QStringLiteral("/tavero-test-XXXXXX"))
{
    const QString configHome = m_home.path() + QStringLiteral("/config");
    QDir().mkpath(configHome);
    qputenv("HOME", QFile::encodeName(m_home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(configHome));
}

void TestEnvironment::clearSettings()
{
    QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("TAVERO"),
              QStringLiteral("TAVERO"))
        .clear();
}

} // namespace tavero::test
