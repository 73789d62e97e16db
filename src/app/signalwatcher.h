#pragma once

#include <QObject>
#include <memory>

class QSocketNotifier;

namespace tavero {

// Turns SIGINT, SIGTERM and SIGHUP (the terminal or the desktop session going away) into a Qt
// signal delivered by the event loop (nested loops included), through a self-pipe, so a stop
// request never interrupts the code that is running and the programme can unwind in order. One
// watcher per process; the previous dispositions come back when it is destroyed.
class SignalWatcher : public QObject {
    Q_OBJECT
public:
    explicit SignalWatcher(QObject* parent = nullptr);
    ~SignalWatcher() override;
    Q_DISABLE_COPY_MOVE(SignalWatcher)

    // False when the pipe or the handlers could not be set up; signals then keep their default
    // effect.
    bool isActive() const { return m_active; }

signals:
    void stopRequested(int signalNumber);

private:
    void readSignals();

    bool m_active = false;
    int m_pipe[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tavero
