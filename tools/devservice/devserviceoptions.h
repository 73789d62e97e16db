#pragma once

#include <optional>
#include <string>

namespace tavero::devservice {

// The command line:
//   tavero-devservice [--data FILE] [--state-dir DIR] [--bind ADDR] [--https-port N]
//                     [--http-port N] [--tunnel-port N] [--vpn-pool CIDR]
//                     [--token-lifetime SECONDS] [--keep-alive SECONDS] [--verbose]
//                     [--exit-with-parent] [--ikev2]
// Port 0 picks a free port.
struct DevServiceOptions {
    std::string dataFile;
    std::string stateDir;
    std::string bindAddress = "127.0.0.1";
    int httpsPort = 8443;
    int httpPort = 8080;
    int tunnelPort = 8445;
    std::string vpnPool;
    int tokenLifetimeSeconds = 3600;
    // How long an idle kept-alive connection stays open. Short by default: each one holds a worker
    // until then, at shutdown too.
    int keepAliveSeconds = 1;
    bool verbose = false;
    bool exitWithParent = false; // stop when the starting process dies (test fixtures)
    // Root only: an IKEv2 responder in a network namespace of its own, and the service inside it.
    bool ikev2 = false;

    static std::string usage();
    // nullopt with `error` set on an unknown option or a bad value; `help` set for --help.
    static std::optional<DevServiceOptions> parse(int argc, char** argv, std::string& error,
                                                  bool& help);
};

} // namespace tavero::devservice
