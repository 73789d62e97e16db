#pragma once

struct OperationResult;

namespace tavero::cli {

// What tavero-cli's exit status means; scripts rely on these numbers, so they never change.
enum ExitCode : int {
    Success = 0,
    Failure = 1,           // anything not listed below
    UsageError = 2,        // bad command line, no password given
    NotLoggedIn = 3,       // no stored log-in, or the service no longer accepts it
    NoConnection = 4,      // the network or the service cannot be reached
    LoginRefused = 5,      // wrong e-mail or password, or the service refused the log-in
    ConnectFailed = 6,     // no protocol brought a verified tunnel up
    NoServerInCountry = 7, // unknown country code, or none of its servers is available
    Busy = 8,              // another tavero-cli command holds the tunnel's settings
    NotProtected = 9,      // status: traffic does not leave through the VPN
};

// The exit code of a failed manager operation: no connection for a missing network or service,
// log-in refused for the service's refusals, `fallback` for everything else.
int exitCodeFor(const OperationResult& result, int fallback);

} // namespace tavero::cli
