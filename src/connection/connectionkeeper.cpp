#include "connection/connectionkeeper.h"

#include "api/iserverapi.h"

namespace tavero {

ConnectionKeeper::ConnectionKeeper(IServerApi& api, int intervalMs)
    : m_api(api)
{
    // Lets the reason travel through queued connections and signal spies.
    qRegisterMetaType<BreakReason>("tavero::ConnectionKeeper::BreakReason");
    m_timer.setInterval(intervalMs);
    connect(&m_timer, &QTimer::timeout, this, &ConnectionKeeper::timerTimeout);
}

ConnectionKeeper::~ConnectionKeeper()
{
    stop();
}

void ConnectionKeeper::start()
{
    if (m_timer.isActive())
        m_timer.stop();
    ++m_run;
    m_isChecking = false;
    m_timer.start();
}

void ConnectionKeeper::stop()
{
    ++m_run;
    m_timer.stop();
}

void ConnectionKeeper::timerTimeout()
{
    // The IP request waits in a nested event loop, so ticks can arrive while one is in flight.
    if (!m_timer.isActive() || m_isChecking)
        return;
    m_isChecking = true;
    const quint64 run = m_run;
    const IpGettingResult ip = m_api.receiveIp();
    if (run != m_run) {
        // Stopped, or restarted for another tunnel, while the answer was on its way: it says
        // nothing about the tunnel there is now. Checks nested in this wait have all ended.
        m_isChecking = false;
        return;
    }
    if (!m_timer.isActive() || ip.status == RequestResult::InvalidResponse ||
        (ip.status == RequestResult::Ok && ip.isProtected)) {
        // Stopped meanwhile, an unreadable answer (not a break), or the tunnel is fine.
        m_isChecking = false;
        return;
    }
    stop();
    const BreakReason reason = ip.status == RequestResult::NoInternet ? NoNetwork : NotProtected;
    emit breakDetected(reason);
    m_isChecking = false;
}

} // namespace tavero
