#include "devserviceoptions.h"

#include <cstdlib>
#include <string_view>

#ifndef TAVERO_DEVSERVICE_SOURCE_DIR
#define TAVERO_DEVSERVICE_SOURCE_DIR "."
#endif

namespace tavero::devservice {

namespace {

bool toNumber(const std::string& text, int lowest, int highest, int& value)
{
    if (text.empty() || text.size() > 9 ||
        text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    value = std::stoi(text);
    return value >= lowest && value <= highest;
}

std::string defaultStateDir()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    const char* temp = std::getenv("TMPDIR");
    const std::string base = runtime && *runtime ? runtime : temp && *temp ? temp : "/tmp";
    return base + "/tavero-devservice";
}

} // namespace

std::string DevServiceOptions::usage()
{
    return "usage: tavero-devservice [--data FILE] [--state-dir DIR] [--bind ADDR]\n"
           "                         [--https-port N] [--http-port N] [--tunnel-port N]\n"
           "                         [--vpn-pool CIDR] [--token-lifetime SECONDS]\n"
           "                         [--keep-alive SECONDS] [--verbose] [--exit-with-parent]\n"
           "                         [--ikev2]\n"
           "Ports default to 8443 (HTTPS API and /json), 8080 (plain-HTTP probe) and 8445\n"
           "(stand-in tunnels); 0 picks a free port. See tools/devservice/README.md.\n";
}

std::optional<DevServiceOptions> DevServiceOptions::parse(int argc, char** argv, std::string& error,
                                                          bool& help)
{
    DevServiceOptions options;
    options.dataFile = std::string(TAVERO_DEVSERVICE_SOURCE_DIR) + "/seed.json";
    options.stateDir = defaultStateDir();
    help = false;
    for (int i = 1; i < argc; ++i) {
        const std::string_view option = argv[i];
        if (option == "--help" || option == "-h") {
            help = true;
            return options;
        }
        if (option == "--verbose") {
            options.verbose = true;
            continue;
        }
        if (option == "--ikev2") {
            options.ikev2 = true;
            continue;
        }
        if (option == "--exit-with-parent") {
            options.exitWithParent = true;
            continue;
        }
        if (i + 1 >= argc) {
            error = "missing value after " + std::string(option);
            return std::nullopt;
        }
        const std::string value = argv[++i];
        bool ok = true;
        if (option == "--data")
            options.dataFile = value;
        else if (option == "--state-dir")
            options.stateDir = value;
        else if (option == "--bind")
            options.bindAddress = value;
        else if (option == "--https-port")
            ok = toNumber(value, 0, 65535, options.httpsPort);
        else if (option == "--http-port")
            ok = toNumber(value, 0, 65535, options.httpPort);
        else if (option == "--tunnel-port")
            ok = toNumber(value, 0, 65535, options.tunnelPort);
        else if (option == "--vpn-pool")
            options.vpnPool = value;
        else if (option == "--token-lifetime")
            ok = toNumber(value, 0, 100000000, options.tokenLifetimeSeconds);
        else if (option == "--keep-alive")
            ok = toNumber(value, 1, 600, options.keepAliveSeconds);
        else {
            error = "unknown option " + std::string(option);
            return std::nullopt;
        }
        if (!ok) {
            error = "bad value for " + std::string(option) + ": " + value;
            return std::nullopt;
        }
    }
    return options;
}

} // namespace tavero::devservice
