#include "connection/killswitcher.h"

#include "api/iserverapi.h"
#include "app/isettings.h"
#include "connection/eventwait.h"
#include "platform/iplatform.h"

#include <QDebug>
#include <QElapsedTimer>

namespace tavero {
namespace {
constexpr int probePauseMs = 250;
constexpr int restoreAttempts = 3;

KillSwitcher::Clock monotonicClock()
{
    return [timer = std::make_shared<QElapsedTimer>()] {
        if (!timer->isValid())
            timer->start();
        return timer->elapsed();
    };
}
} // namespace

KillSwitcher::KillSwitcher(IServerApi& api, IPlatform& platform, ISettings& settings, Clock clock)
    : m_api(api)
    , m_platform(platform)
    , m_settings(settings)
    , m_clock(clock ? std::move(clock) : monotonicClock())
{}

KillSwitcher::~KillSwitcher()
{
    qDebug() << "Stop killswitcher";
    if (m_state != InternetOff)
        return;
    qDebug() << "Enable Net Devices";
    // The last chance in this run: a switch-on that fails is tried again; what still fails stays
    // on disk for the next start.
    for (int attempt = 0; attempt < restoreAttempts; ++attempt) {
        enableNetDevices();
        if (!m_platform.haveDisabledNetDevicesByKillSwitch())
            return;
    }
    qCritical("The network connections switched off by the kill switch could not be switched on");
}

bool KillSwitcher::restoreLeftover()
{
    if (!m_platform.haveDisabledNetDevicesByKillSwitch())
        return true;
    qWarning("Restoring network connections the kill switch of an earlier run switched off");
    m_state = InternetOff;
    return switchOn();
}

bool KillSwitcher::switchOn()
{
    bool reenabled = false;
    const OperationResult result = m_platform.turnOnInternet(reenabled);
    if (m_platform.haveDisabledNetDevicesByKillSwitch()) {
        // Still remembered: the network is still (partly) cut; the next restore tries again.
        m_state = InternetOff;
        qCritical().noquote() << "Could not switch the network back on after the kill switch:"
                              << result.message;
        return false;
    }
    m_state = InternetOn;
    return reenabled;
}

bool KillSwitcher::canInternetOff()
{
    return m_settings.isKillSwitch() && m_state != InternetOff;
}

void KillSwitcher::stopInternet()
{
    if (!canInternetOff())
        return;
    const OperationResult result = m_platform.turnOffInternet();
    // What the platform remembers is what it really switched off (or tried to): only then is the
    // network counted as cut.
    if (!m_platform.haveDisabledNetDevicesByKillSwitch()) {
        qCritical().noquote() << "The kill switch could not cut the network:" << result.message;
        return;
    }
    m_state = InternetOff;
    qWarning("Internet stopped by killswitch");
}

bool KillSwitcher::startInternet(int limitSeconds)
{
    if (m_state == InternetOn)
        return true;
    // Sets the state before waiting: a nested call through the event processing below returns
    // at once.
    if (!switchOn())
        return false;

    const qint64 start = m_clock();
    for (;;) {
        if ((m_clock() - start) / 1000 > limitSeconds) {
            qWarning("Internet started after killswitch");
            return false;
        }
        if (m_api.isThereInternet())
            return true;
        // A refused probe answers at once: pause between tests instead of hammering the probe,
        // keeping the interface alive meanwhile.
        processEventsFor(probePauseMs);
    }
}

bool KillSwitcher::haveDisabledNetDevicesByKillSwitch()
{
    return m_platform.haveDisabledNetDevicesByKillSwitch();
}

void KillSwitcher::enableNetDevices()
{
    m_platform.turnOnNetDevices();
}

} // namespace tavero
