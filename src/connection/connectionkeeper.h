#pragma once

#include <QObject>
#include <QTimer>

class IServerApi;

namespace tavero {

// While a tunnel is up, asks the IP-information service every interval whether traffic still
// leaves through the VPN, and reports the first bad answer once per start().
class ConnectionKeeper : public QObject {
    Q_OBJECT
public:
    enum BreakReason : int {
        CheckFailed = 0,  // never reported: a failed request leaves "protected" false
        NotProtected = 1, // the service sees the real address
        NoNetwork = 2,    // the IP request got no reply at all
    };
    Q_ENUM(BreakReason)

    static constexpr int defaultIntervalMs = 1500;

    explicit ConnectionKeeper(IServerApi& api, int intervalMs = defaultIntervalMs);
    ~ConnectionKeeper() override;

    // (Re)starts checking; the first check comes one interval later.
    void start();
    // Stops checking; an answer still in flight is dropped.
    void stop();
    bool isRunning() const { return m_timer.isActive(); }

signals:
    void breakDetected(tavero::ConnectionKeeper::BreakReason breakReason);

private slots:
    void timerTimeout();

private:
    IServerApi& m_api;
    QTimer m_timer;
    bool m_isChecking = false;
    // Bumped by start() and stop(): an answer is judged only against the run that asked.
    quint64 m_run = 0;
};

} // namespace tavero
