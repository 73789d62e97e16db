#pragma once

#include <QString>
#include <QStringList>

namespace tavero {

// Installs an update the client downloaded. The client saves the installer as "update.exe" and
// starts the runner; on Linux the file is expected to be a Debian package of the client.
//
// On Windows it is the client's setup program: run() checks that it exists and is a Windows
// program, waits until the client has gone, runs it silently ("/S", or the given installer
// command with the file's path), removes it and starts tavero.exe from the program directory.
// Failures map to the same outcomes as below.
//
// run(), in order:
//  1. The update file must exist and hold data; otherwise NoUpdate.
//  2. It must be a Debian package (checked with dpkg-deb) named "tavero" for this machine's
//     architecture (or "all"); a Windows installer, anything else, or another package gives
//     NotInstallable. Nothing is run in these cases and the file is left where it is.
//  3. It must lie in a folder that only this user can write, be this user's own file that nobody
//     else can write, and hold a newer version than the installed client (or this build);
//     otherwise NotInstallable.
//  4. The installer command is run with the package's absolute path as its last argument; a
//     failure to start or a non-zero exit gives InstallFailed (the file is kept for another try).
//  5. Installed: the file is removed; the runner waits (at most waitForExitMs) until no copy of
//     the client holds its single-instance marker, then starts "tavero" from the program
//     directory (<prefix>/bin when the runner lies in <prefix>/lib/tavero), detached and without
//     arguments.
class UpdateRunner {
public:
    // Values are the runner's exit codes.
    enum class Outcome {
        Installed = 0,
        NoUpdate = 2,
        NotInstallable = 3,
        InstallFailed = 4,
    };

    struct Options {
        QString updateFile;       // absolute or relative to the current directory
        QString programDirectory; // where "tavero" is started from after the installation
        // Program and leading arguments; empty: apt-get install, through pkexec unless root.
        QStringList installerCommand;
        QString instanceName = QStringLiteral("tavero"); // the client's marker
        int waitForExitMs = 30000;
    };

    explicit UpdateRunner(Options options);

    Outcome run();
    // One sentence for the user (and the system log) about the outcome.
    const QString& message() const { return m_message; }
    // Whether the client was started again.
    bool restartedClient() const { return m_restarted; }

private:
    struct PackageFields {
        QString name;
        QString architecture;
        QString version;
    };

    Outcome refuse(Outcome outcome, const QString& message);
    Outcome installSetupProgram(const QString& path);
    Outcome runInstaller(const QString& program, const QStringList& arguments);
    bool readPackageFields(const QString& path, PackageFields& fields, QString& error) const;
    QStringList installerCommand() const;
    bool waitUntilTheClientExited() const;

    Options m_options;
    QString m_message;
    bool m_restarted = false;
};

} // namespace tavero
