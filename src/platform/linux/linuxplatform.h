#pragma once

namespace tavero {

// The platform layer on Linux.
class LinuxPlatform {
public:
    // Effective uid 0, or CAP_NET_ADMIN in the effective capability set.
    static bool isRunningAsAdministrator();

    // Starts an elevated copy through pkexec (keeping the display variables) and returns true once
    // that copy has started; false when elevation is off (TAVERO_NO_ELEVATE=1), impossible (no
    // pkexec, no display) or declined.
    static bool elevateToAdmin();

    // Called at start-up by every copy: an elevated copy tells the copy that started it that it
    // runs, so that copy can end.
    static void confirmElevatedStart();
};

} // namespace tavero
