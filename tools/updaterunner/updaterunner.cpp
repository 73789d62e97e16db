#include "updaterunner.h"

#include "app/programfiles.h"
#include "app/singleinstancemarker.h"
#include "app/userfileaccess.h"
#include "buildinfo.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tavero {

namespace {
const QString clientPackage = QStringLiteral("tavero");
#ifdef Q_OS_WIN
const QString clientProgram = QStringLiteral("tavero.exe");
#else
const QString clientProgram = QStringLiteral("tavero");
#endif
constexpr int toolTimeoutMs = 60000;
// An installation may wait for a password prompt and for other package managers.
constexpr int installerTimeoutMs = 30 * 60 * 1000;

#ifndef Q_OS_WIN
// Standard output of a short-lived tool, or a null string when it could not run or failed.
QString runTool(const QString& program, const QStringList& arguments, QString* error = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted(toolTimeoutMs)) {
        if (error)
            *error = QStringLiteral("%1 could not be started").arg(program);
        return QString();
    }
    process.closeWriteChannel();
    if (!process.waitForFinished(toolTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        if (error)
            *error = QStringLiteral("%1 did not finish").arg(program);
        return QString();
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        if (error)
            *error = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
        return QString();
    }
    const QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
    return output.isNull() ? QStringLiteral("") : output;
}

// Only this user may have written the file, and only this user may replace it: its folder and the
// file itself belong to us and are closed to everyone else's writing, and it is no link.
bool onlyWeCanWrite(const QString& path)
{
    struct stat file {};
    return ::lstat(QFile::encodeName(path).constData(), &file) == 0 && S_ISREG(file.st_mode) &&
           file.st_uid == ::geteuid() && (file.st_mode & (S_IWGRP | S_IWOTH)) == 0 &&
           UserFileAccess::isPrivateFolder(QFileInfo(path).absolutePath());
}

// The version the package must be newer than: the installed client's, or this build's.
QString currentVersion()
{
    const QString installed =
        runTool(QStringLiteral("dpkg-query"), {"--showformat=${Version}", "--show", "tavero"})
            .trimmed();
    return installed.isEmpty() ? QString::fromLatin1(buildinfo::version) : installed;
}

bool isNewer(const QString& version, const QString& than)
{
    return !runTool(QStringLiteral("dpkg"), {"--compare-versions", version, "gt", than}).isNull();
}
#endif

bool startsWith(const QString& path, const QByteArray& magic)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(magic.size()) == magic;
}
} // namespace

UpdateRunner::UpdateRunner(Options options)
    : m_options(std::move(options))
{}

UpdateRunner::Outcome UpdateRunner::run()
{
    const QFileInfo update(m_options.updateFile);
    if (!update.isFile() || update.size() == 0 || !update.isReadable())
        return refuse(Outcome::NoUpdate,
                      QStringLiteral("There is no downloaded update to install (%1).")
                          .arg(QDir::toNativeSeparators(update.absoluteFilePath())));
    QString path = update.absoluteFilePath();
#ifdef Q_OS_WIN
    return installSetupProgram(path);
#else
    if (!onlyWeCanWrite(path))
        return refuse(Outcome::NotInstallable,
                      QStringLiteral("The downloaded update lies where others could have changed "
                                     "it (%1); it was not installed.")
                          .arg(path));

    PackageFields fields;
    QString error;
    if (!readPackageFields(path, fields, error)) {
        if (startsWith(path, "MZ"))
            return refuse(Outcome::NotInstallable,
                          QStringLiteral("The downloaded update is a Windows installer; it cannot "
                                         "be installed on this system."));
        return refuse(Outcome::NotInstallable,
                      QStringLiteral("The downloaded update is not a package this system can "
                                     "install (%1).")
                          .arg(error));
    }
    if (fields.name != clientPackage)
        return refuse(Outcome::NotInstallable,
                      QStringLiteral("The downloaded package \"%1\" is not the Tavero client; it "
                                     "was not installed.")
                          .arg(fields.name));
    const QString machine = runTool(QStringLiteral("dpkg"), {"--print-architecture"}).trimmed();
    if (fields.architecture != QLatin1String("all") && fields.architecture != machine)
        return refuse(Outcome::NotInstallable,
                      QStringLiteral("The downloaded package is built for %1, this machine is %2; "
                                     "it was not installed.")
                          .arg(fields.architecture, machine));

    const QString current = currentVersion();
    if (!isNewer(fields.version, current))
        return refuse(Outcome::NotInstallable,
                      QStringLiteral("The downloaded package holds version %1, which is not newer "
                                     "than %2; it was not installed.")
                          .arg(fields.version, current));

    QStringList command = installerCommand();
    if (m_options.installerCommand.isEmpty() && !path.endsWith(QLatin1String(".deb"))) {
        // apt-get takes a file for a package only by its ".deb" name.
        const QString named = path + QStringLiteral(".deb");
        if (!QFile::rename(path, named))
            return refuse(Outcome::InstallFailed,
                          QStringLiteral("The update could not be renamed to %1.").arg(named));
        path = named;
    }
    if (command.isEmpty())
        return refuse(Outcome::InstallFailed,
                      QStringLiteral("Installing the update needs administrator rights and pkexec "
                                     "is not available. Install it with: sudo apt-get install %1")
                          .arg(path));
    const QString program = command.takeFirst();
    if (const Outcome ran = runInstaller(program, command << path); ran != Outcome::Installed)
        return ran;

    QFile::remove(path);
    m_message = QStringLiteral("Tavero %1 was installed.").arg(fields.version);
    if (waitUntilTheClientExited()) {
        const QString programs = ProgramFiles::programDirectory(m_options.programDirectory);
        const QString client = QDir(programs).filePath(clientProgram);
        m_restarted = QProcess::startDetached(client, {}, programs);
    }
    if (!m_restarted)
        m_message += QStringLiteral(" Start it again to use the new version.");
    return Outcome::Installed;
#endif
}

#ifdef Q_OS_WIN
UpdateRunner::Outcome UpdateRunner::installSetupProgram(const QString& path)
{
    if (!startsWith(path, "MZ"))
        return refuse(Outcome::NotInstallable,
                      QStringLiteral("The downloaded update is not a Windows installer (%1); it "
                                     "was not installed.")
                          .arg(QDir::toNativeSeparators(path)));
    // The installer replaces the running programs' files, so the client must have gone first.
    if (!waitUntilTheClientExited())
        return refuse(Outcome::InstallFailed,
                      QStringLiteral("The client is still running; the update was not installed."));
    QStringList command = m_options.installerCommand;
    // Without a given installer the downloaded setup program runs itself, silently.
    if (command.isEmpty())
        command = QStringList{path, QStringLiteral("/S")};
    else
        command << path;
    const QString program = command.takeFirst();
    if (const Outcome ran = runInstaller(program, command); ran != Outcome::Installed)
        return ran;
    QFile::remove(path);
    m_message = QStringLiteral("The Tavero update was installed.");
    const QString programs = m_options.programDirectory;
    m_restarted = QProcess::startDetached(QDir(programs).filePath(clientProgram), {}, programs);
    if (!m_restarted)
        m_message += QStringLiteral(" Start it again to use the new version.");
    return Outcome::Installed;
}
#endif

// Runs the installer to its end; Installed when it ended well, else the refusal with its reason.
UpdateRunner::Outcome UpdateRunner::runInstaller(const QString& program,
                                                 const QStringList& arguments)
{
    QProcess installer;
    installer.setProcessChannelMode(QProcess::ForwardedChannels);
    installer.start(program, arguments);
    if (!installer.waitForStarted(toolTimeoutMs))
        return refuse(Outcome::InstallFailed,
                      QStringLiteral("The installer %1 could not be started.").arg(program));
    if (!installer.waitForFinished(installerTimeoutMs)) {
        installer.kill();
        installer.waitForFinished();
        return refuse(Outcome::InstallFailed, QStringLiteral("The installer did not finish."));
    }
    if (installer.exitStatus() != QProcess::NormalExit || installer.exitCode() != 0)
        return refuse(Outcome::InstallFailed,
                      QStringLiteral("Installing the update failed (the installer ended with %1).")
                          .arg(installer.exitCode()));
    return Outcome::Installed;
}

UpdateRunner::Outcome UpdateRunner::refuse(Outcome outcome, const QString& message)
{
    m_message = message;
    return outcome;
}

#ifndef Q_OS_WIN
bool UpdateRunner::readPackageFields(const QString& path, PackageFields& fields,
                                     QString& error) const
{
    const QString output = runTool(QStringLiteral("dpkg-deb"),
                                   {"--field", path, "Package", "Architecture", "Version"}, &error);
    if (output.isNull())
        return false;
    for (const QString& line : output.split(QLatin1Char('\n'))) {
        const int colon = line.indexOf(QLatin1Char(':'));
        if (colon < 0)
            continue;
        const QString name = line.left(colon).trimmed();
        const QString value = line.mid(colon + 1).trimmed();
        if (name == QLatin1String("Package"))
            fields.name = value;
        else if (name == QLatin1String("Architecture"))
            fields.architecture = value;
        else if (name == QLatin1String("Version"))
            fields.version = value;
    }
    if (fields.name.isEmpty()) {
        error = QStringLiteral("no package name");
        return false;
    }
    return true;
}

QStringList UpdateRunner::installerCommand() const
{
    if (!m_options.installerCommand.isEmpty())
        return m_options.installerCommand;
    const QStringList aptInstall = {QStringLiteral("apt-get"), QStringLiteral("install"),
                                    QStringLiteral("--yes")};
    if (::geteuid() == 0)
        return aptInstall;
    const QString pkexec = QStandardPaths::findExecutable(QStringLiteral("pkexec"));
    if (pkexec.isEmpty())
        return {};
    return QStringList{pkexec} + aptInstall;
}
#endif

bool UpdateRunner::waitUntilTheClientExited() const
{
    QElapsedTimer waited;
    waited.start();
    while (SingleInstanceMarker::check(m_options.instanceName)) {
        if (waited.elapsed() >= m_options.waitForExitMs)
            return false;
        QThread::msleep(100);
    }
    return true;
}

} // namespace tavero
