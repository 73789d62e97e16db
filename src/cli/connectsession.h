#pragma once

#include "connection/connectionchain.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <functional>

class QEventLoop;

namespace tavero {
class VpnManager;
}

namespace tavero::cli {

class CliOutput;

// The foreground part of `tavero-cli connect`: connects to the current server the way the status
// page does, prints every change of the connection's mode with a time stamp, lets the connection
// chain keep and re-establish the tunnel, and on a stop request disconnects and ends.
//
// A stop request is carried out only from the session's own event loop: while an attempt or a
// service exchange is running it waits, so nothing is torn down underneath running code.
class ConnectSession : public QObject {
    Q_OBJECT
public:
    using Clock = std::function<QDateTime()>;

    ConnectSession(VpnManager& manager, CliOutput& output, Clock clock = {});
    ~ConnectSession() override;

    // Connects, then runs until a stop request has been carried out. Returns the exit code:
    // success after a clean stop, otherwise what made it fail.
    int run();

public slots:
    void requestStop(int signalNumber);

private:
    void onModeChanged();
    void onReestablishStarted();
    void onReestablishFinished(bool isSuccess);
    void onProtocolsExpired();
    void tryFinish();
    int finish();
    void printMode(ConnectionChain::Mode mode);
    QDateTime now() const;
    static QString modeName(ConnectionChain::Mode mode);

    VpnManager& m_manager;
    CliOutput& m_output;
    Clock m_clock;
    QString m_serverName; // the server being connected to, or last connected to
    int m_lastPrintedMode = -1;
    bool m_inAttempt = false;
    bool m_stopRequested = false;
    bool m_finished = false;
    QTimer m_stopTimer;
    QEventLoop* m_loop = nullptr;
};

} // namespace tavero::cli
