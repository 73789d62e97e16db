// UpdateRunner: installs the update the client downloaded, then starts the client again. The
// client starts it with no arguments from the program directory and names the downloaded file in
// TAVERO_UPDATE_FILE; without it the runner takes "update.exe" in its current directory. See
// updaterunner.h for the steps and docs/decisions.md for the reasons.
#include "app/messagehandler.h"
#include "updaterunner.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDebug>
#include <QDir>
#include <QMessageBox>
#include <QTextStream>
#include <memory>

namespace {

// A report box needs a screen someone looks at; offscreen or without a display the system log
// and the standard error stream are all there is.
bool hasScreen()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform == "offscreen" || platform == "minimal")
        return false;
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

int main(int argc, char** argv)
{
    qInstallMessageHandler(tavero::messageHandler);
    const bool withScreen = hasScreen();
    std::unique_ptr<QCoreApplication> app;
    if (withScreen)
        app = std::make_unique<QApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("UpdateRunner"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Installs the Tavero update package the client downloaded and starts the "
                       "client again. Normally started by the client, with no arguments."));
    parser.addHelpOption();
    const QCommandLineOption installerOption(
        QStringLiteral("installer"),
        QStringLiteral("Program that installs the package, given its path (default: apt-get "
                       "install, through pkexec unless run as root)."),
        QStringLiteral("program"));
    const QCommandLineOption instanceOption(
        QStringLiteral("instance-name"),
        QStringLiteral("Single-instance name of the client to wait for (default: tavero)."),
        QStringLiteral("name"));
    parser.addOptions({installerOption, instanceOption});
    parser.process(*app);

    tavero::UpdateRunner::Options options;
    options.updateFile = qEnvironmentVariableIsEmpty("TAVERO_UPDATE_FILE")
                             ? QDir::current().filePath(QStringLiteral("update.exe"))
                             : qEnvironmentVariable("TAVERO_UPDATE_FILE");
    options.programDirectory = QCoreApplication::applicationDirPath();
    if (parser.isSet(installerOption))
        options.installerCommand = QStringList{parser.value(installerOption)};
    if (parser.isSet(instanceOption))
        options.instanceName = parser.value(instanceOption);

    tavero::UpdateRunner runner(options);
    const tavero::UpdateRunner::Outcome outcome = runner.run();
    const bool installed = outcome == tavero::UpdateRunner::Outcome::Installed;
    if (installed)
        qInfo().noquote() << "UpdateRunner:" << runner.message();
    else
        qWarning().noquote() << "UpdateRunner:" << runner.message();
    QTextStream(stderr) << runner.message() << Qt::endl;

    if (withScreen && !(installed && runner.restartedClient())) {
        if (installed)
            QMessageBox::information(nullptr, QStringLiteral("TAVERO"), runner.message());
        else
            QMessageBox::warning(nullptr, QStringLiteral("TAVERO"), runner.message());
    }
    return static_cast<int>(outcome);
}
