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
    if (m_state == InternetOff) {
        qDebug() << "Enable Net Devices";
        enableNetDevices();
    }
}

bool KillSwitcher::canInternetOff()
{
    return m_settings.isKillSwitch() && m_state != InternetOff;
}

void KillSwitcher::stopInternet()
{
    if (!canInternetOff())
        return;
    m_platform.turnOffInternet();
    m_state = InternetOff;
    qWarning("Internet stopped by killswitch");
}

bool KillSwitcher::startInternet(int limitSeconds)
{
    if (m_state == InternetOn)
        return true;
    bool reenabled = false;
    m_platform.turnOnInternet(reenabled);
    // Set before waiting: a nested call through the event processing below returns at once.
    m_state = InternetOn;
    if (!reenabled)
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
