#include "app/programfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tavero {

namespace {
const QString companionSuffix = QStringLiteral("/lib/tavero");

// An installed companion runs from <prefix>/lib/tavero.
bool isCompanionDirectory(const QString& directory)
{
    return QDir::cleanPath(directory).endsWith(companionSuffix);
}

// An installed program runs from <prefix>/bin beside <prefix>/lib/tavero.
QString installedCompanions(const QString& directory)
{
    const QString clean = QDir::cleanPath(directory);
    if (!clean.endsWith(QStringLiteral("/bin")))
        return QString();
    const QString companions = QDir::cleanPath(clean + QStringLiteral("/..") + companionSuffix);
    return QFileInfo(companions).isDir() ? companions : QString();
}
} // namespace

QString ProgramFiles::programDirectory(const QString& executableDirectory)
{
    if (isCompanionDirectory(executableDirectory))
        return QDir::cleanPath(executableDirectory + QStringLiteral("/../../bin"));
    return QDir::cleanPath(executableDirectory);
}

QString ProgramFiles::companionDirectory(const QString& executableDirectory)
{
    if (isCompanionDirectory(executableDirectory))
        return QDir::cleanPath(executableDirectory);
    const QString installed = installedCompanions(executableDirectory);
    return installed.isEmpty() ? QDir::cleanPath(executableDirectory) : installed;
}

QString ProgramFiles::programDirectory()
{
    return programDirectory(QCoreApplication::applicationDirPath());
}

QString ProgramFiles::companionDirectory()
{
    return companionDirectory(QCoreApplication::applicationDirPath());
}

} // namespace tavero
