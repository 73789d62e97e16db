#pragma once

#include <optional>

namespace tavero {

// Answers of the process-level platform tests that a test may force, so that the rules built on
// them (which protocols to offer, which questions to ask) are exercised both ways on any machine.
// Unset, the native implementation asks the system.
class PlatformOverrides {
public:
    static std::optional<bool> administrator();
    static void setAdministrator(std::optional<bool> answer);

    static std::optional<bool> rdpListening();
    static void setRdpListening(std::optional<bool> answer);
};

} // namespace tavero
