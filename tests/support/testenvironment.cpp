#include "support/testenvironment.h"

#include <QDir>
#include <QFileInfo>
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

bool TestEnvironment::writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(content) == content.size();
}

QByteArray TestEnvironment::readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace tavero::test
