#pragma once

#include <QtGlobal>
#include <functional>

class IServerApi;

namespace tavero {

class IPlatform;
class ISettings;

// Cuts the machine off the network after a tunnel break when the user wants that, brings the
// network back before the next attempt, and never leaves it cut when the program ends. The state
// follows what the platform reports it really switched: a cut that switched nothing is not a cut,
// a restore that left connections off is not a restore (and is tried again by the next one).
class KillSwitcher {
public:
    enum State : int {
        Untouched = 0,   // nothing done yet
        InternetOn = 1,  // the network was restored
        InternetOff = 2, // the network was cut
    };

    // Milliseconds of a monotonic clock; injectable so tests need not wait out real limits.
    using Clock = std::function<qint64()>;

    KillSwitcher(IServerApi& api, IPlatform& platform, ISettings& settings, Clock clock = {});
    ~KillSwitcher();
    KillSwitcher(const KillSwitcher&) = delete;
    KillSwitcher& operator=(const KillSwitcher&) = delete;

    // The setting is on and the network is not already cut.
    bool canInternetOff();
    void stopInternet();
    // Restores the network and waits up to limitSeconds for connectivity. True when it was
    // already restored or came back in time; false when nothing had to be switched on or it did
    // not come back.
    bool startInternet(int limitSeconds);
    bool isInternetOff() const { return m_state == InternetOff; }
    // At start: switches on what the kill switch of an earlier run (one that crashed while the
    // network was cut) left switched off. True when nothing was left or all came back; false
    // (reported, state InternetOff, retried by the next restore) otherwise.
    bool restoreLeftover();
    bool haveDisabledNetDevicesByKillSwitch();
    void enableNetDevices();

    State state() const { return m_state; }

private:
    // Asks the platform to switch on what it remembers; the state follows what it still
    // remembers afterwards. Returns whether something was switched on and nothing is left.
    bool switchOn();

    State m_state = Untouched;
    IServerApi& m_api;
    IPlatform& m_platform;
    ISettings& m_settings;
    Clock m_clock;
};

} // namespace tavero
