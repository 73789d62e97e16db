#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tavero::devservice {

// What the service knows: accounts, countries, servers, the newest version, where the flag
// pictures are and the home country of callers without a tunnel. Loaded from a JSON seed file
// (tools/devservice/seed.json describes the format by example).
struct SeedData {
    struct Account {
        std::string email;
        std::string password;
        std::string vpnUsername;
        std::string vpnPassword;
        std::string sharedKey;
        std::string plan;
        // PEM file names inside the state directory and, after loadCertificates(), their text.
        std::string caFile;
        std::string certificateFile;
        std::string keyFile;
        std::string ca;
        std::string certificate;
        std::string key;
    };
    struct Country {
        int id = 0;
        std::string code; // lower case, as the API sends it
        std::string name;
    };
    struct Server {
        std::string name;
        int countryId = 0;
        double load = 0;
        bool recommended = false;
        std::string host;
        bool ovpn = true;
        std::string exitIp; // the public address a tunnel through it shows
    };
    struct Version {
        std::string version;
        int versionInt = 0;
        std::string downloadPath; // served by the service itself
        std::string changelog;
    };

    std::string homeCountryCode; // upper case, as IP-information services send it
    std::string homeUnknownTunnelIp = "203.0.113.250";
    std::vector<Account> accounts;
    std::vector<Country> countries;
    std::vector<Server> servers;
    Version version;
    std::string flagsDir; // absolute; holds 640x480/<code>.png and 60x45/<code>.png

    // Reads and checks the seed; nullopt with `error` set when it is unusable.
    static std::optional<SeedData> load(const std::string& file, std::string& error);
    // Reads each account's PEM files from `stateDir`.
    bool loadCertificates(const std::string& stateDir, std::string& error);

    const Country* country(int id) const;
    const Server* serverByHost(const std::string& host) const;
    const Account* account(const std::string& email) const;
};

} // namespace tavero::devservice
