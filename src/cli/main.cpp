// tavero-cli: the headless front end over the VPN manager, for scripts, tests and benchmarks.

#include "api/serverapi.h"
#include "app/messagehandler.h"
#include "app/settings.h"
#include "app/signalwatcher.h"
#include "buildinfo.h"
#include "cli/cliapp.h"
#include "cli/clioptions.h"
#include "cli/clioutput.h"
#include "cli/exitcode.h"
#include "cli/passwordreader.h"
#include "connection/killswitcher.h"
#include "connection/runtimedirectory.h"
#include "manager/vpnmanager.h"
#include "platform/logger.h"
#include "platform/nativeplatform.h"

#include <QCoreApplication>
#include <QFile>
#include <QTranslator>

int main(int argc, char* argv[])
{
    // Standard output carries the answers scripts read; the system log's steps go beside them.
    tavero::Logger::setStepStream(stderr);
    qInstallMessageHandler(tavero::messageHandler);
    // No Qt plug-ins: the only ones this program would load are the network bearer plug-ins,
    // which the first network access manager loads and starts (NetworkManager and ConnMan over
    // D-Bus, a netlink poller) for answers the client never asks for.
    QCoreApplication::setLibraryPaths({});
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tavero-cli"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(tavero::buildinfo::version));

    QFile out;
    QFile err;
    out.open(stdout, QIODevice::WriteOnly);
    err.open(stderr, QIODevice::WriteOnly);

    using namespace tavero::cli;
    CliOptions options;
    QString error;
    const bool parsed = CliOptions::parse(app.arguments().mid(1), options, error);
    CliOutput output(options.json, out, err);
    if (!parsed) {
        output.error(error, UsageError);
        output.note(QStringLiteral("Run tavero-cli --help for the commands."));
        return UsageError;
    }
    if (options.command == CliOptions::Command::Help ||
        options.command == CliOptions::Command::Version)
        return CliApp::printInformation(options, output);

    // Messages for scripts are English whatever language the graphical client uses.
    QTranslator english;
    if (english.load(QStringLiteral(":/translations/eng")))
        QCoreApplication::installTranslator(&english);

    // As in the graphical client: an openvpn left by a killed copy is stopped before anything
    // connects or reports the state.
    tavero::RuntimeDirectory::removeLeftovers();

    // As in the graphical client: without administrator rights neither OpenVPN nor the kill
    // switch is offered. There is no elevation prompt here; run it with the rights it needs.
    if (!tavero::NativePlatform::isRunningAsAdministrator()) {
        tavero::ServerApi::setIsOpenVpnAllowed(false);
        tavero::ServerApi::setIsKillswitchAllowed(false);
        if (options.command == CliOptions::Command::Connect)
            output.note(QStringLiteral("tavero-cli: no administrator rights: OpenVPN and the kill "
                                       "switch are not available"));
    }

    // Before anything that can block, so a stop request during the log-in or the first attempt
    // is not lost; other commands keep the default reaction to signals.
    std::unique_ptr<tavero::SignalWatcher> stopSignals;
    if (options.command == CliOptions::Command::Connect)
        stopSignals = std::make_unique<tavero::SignalWatcher>();

    tavero::ServerApi api;
    // Likewise the network connections such a copy's kill switch left switched off come back,
    // whatever the command: `status` must not describe a machine cut off by a dead client.
    {
        tavero::NativePlatform platform;
        tavero::Settings settings;
        tavero::KillSwitcher(api, platform, settings).restoreLeftover();
    }
    PasswordReader passwordReader;
    CliApp cli(
        options, output, api, [&api] { return std::make_unique<tavero::VpnManager>(api); },
        [&passwordReader](QString& password) { return passwordReader.read(password); });
    if (stopSignals) {
        QObject::connect(stopSignals.get(), &tavero::SignalWatcher::stopRequested, &app,
                         [&cli](int signalNumber) { cli.requestStop(signalNumber); });
    }
    return cli.run();
}
