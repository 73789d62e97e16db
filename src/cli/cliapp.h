#pragma once

#include "cli/clioptions.h"

#include <QString>
#include <functional>
#include <memory>

class IServerApi;

namespace tavero {
class VpnManager;
}

namespace tavero::cli {

class CliOutput;
class CommandLock;

// Runs one tavero-cli command over the pieces the graphical client uses: the VPN manager (with the
// same settings store, server selector and connection chain) logged in from the stored token, and
// the service client. Commands that build a VPN manager hold a lock beside the settings store, so
// two of them never manage the tunnel at once.
class CliApp {
public:
    // Builds the VPN manager for login, servers and connect; the programme builds one over the
    // native platform, tests one over a scripted platform.
    using ManagerFactory = std::function<std::unique_ptr<VpnManager>()>;
    // Reads the log-in password; false when there is none.
    using PasswordSource = std::function<bool(QString& password)>;

    CliApp(CliOptions options, CliOutput& output, IServerApi& api, ManagerFactory makeManager,
           PasswordSource readPassword);
    ~CliApp();

    // Runs the command and returns the exit code (see exitcode.h). `connect` returns only after
    // a stop request (stopRequested) or a failure.
    int run();

    // SIGINT/SIGTERM/SIGHUP for a running connect; before the tunnel is up the request waits for
    // the attempt to end, then disconnects.
    void requestStop(int signalNumber);

    // Prints the usage (help) or the version; needs neither the service nor the settings.
    static int printInformation(const CliOptions& options, CliOutput& output);

    // The lock file guarding the settings store against two tunnel-managing commands.
    static QString lockFilePath();

private:
    int login();
    int servers();
    int connect();
    int status();
    int logout();
    // Builds the manager under the lock; Success, or the exit code with the error printed.
    int prepareManager();
    // Logs in from the stored token the way the graphical client does at start.
    int logInFromStoredToken();
    // prepareManager(), then logInFromStoredToken().
    int prepareLoggedInManager();
    int chooseCountry(const QString& code);

    CliOptions m_options;
    CliOutput& m_output;
    IServerApi& m_api;
    ManagerFactory m_makeManager;
    PasswordSource m_readPassword;
    std::unique_ptr<CommandLock> m_lock;
    std::unique_ptr<VpnManager> m_manager;
    std::function<void(int)> m_forwardStop;
    int m_pendingStop = 0;
};

} // namespace tavero::cli
