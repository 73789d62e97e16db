#pragma once

#include <string>
#include <vector>

namespace tavero::devservice {

// The development PKI in the state directory, made by the make-pki script: a CA, the HTTPS
// certificate, an OpenVPN server certificate and two client certificates.
class Pki {
public:
    static const std::vector<std::string>& fileNames();

    // Runs `script` into `stateDir` when a file is missing, the CA expires within two days, or the
    // HTTPS certificate was made for other extra addresses. False with `error` when that fails.
    static bool ensure(const std::string& stateDir, const std::string& script,
                       const std::vector<std::string>& extraAddresses, std::string& error);

private:
    static bool expiresSoon(const std::string& certificateFile);
};

} // namespace tavero::devservice
