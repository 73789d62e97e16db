#include "app/signalwatcher.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include <QMetaObject>
#include <QSocketNotifier>
#include <atomic>
#include <csignal>
#include <windows.h>

namespace tavero {
namespace {

std::atomic<SignalWatcher*> watcher{nullptr};

// Runs on a thread the system makes for the event; the request reaches the watcher through its
// event loop. Ctrl+C and Ctrl+Break stand for SIGINT, closing the console or ending the session
// for SIGTERM.
BOOL WINAPI onConsoleEvent(DWORD event)
{
    SignalWatcher* target = watcher.load();
    if (!target)
        return FALSE;
    const int signalNumber = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? SIGINT : SIGTERM;
    QMetaObject::invokeMethod(
        target, [target, signalNumber] { emit target->stopRequested(signalNumber); },
        Qt::QueuedConnection);
    return TRUE;
}

} // namespace

SignalWatcher::SignalWatcher(QObject* parent)
    : QObject(parent)
{
    SignalWatcher* none = nullptr;
    if (!watcher.compare_exchange_strong(none, this))
        return;
    m_active = SetConsoleCtrlHandler(onConsoleEvent, TRUE) != FALSE;
    if (!m_active)
        watcher.store(nullptr);
}

SignalWatcher::~SignalWatcher()
{
    if (m_active) {
        SetConsoleCtrlHandler(onConsoleEvent, FALSE);
        watcher.store(nullptr);
    }
}

void SignalWatcher::readSignals() {}

} // namespace tavero
#else
#include <QSocketNotifier>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tavero {
namespace {

std::atomic<int> writeEnd{-1};
constexpr int watched[] = {SIGINT, SIGTERM, SIGHUP};
struct sigaction previous[3];

void onSignal(int signalNumber)
{
    const int saved = errno;
    const int fd = writeEnd.load();
    if (fd >= 0) {
        const unsigned char byte = static_cast<unsigned char>(signalNumber);
        // A full pipe already holds a pending request; losing this byte loses nothing.
        [[maybe_unused]] const ssize_t written = ::write(fd, &byte, 1);
    }
    errno = saved;
}

} // namespace

SignalWatcher::SignalWatcher(QObject* parent)
    : QObject(parent)
{
    if (writeEnd.load() >= 0 || ::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    writeEnd.store(m_pipe[1]);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int i = 0; i < 3; ++i) {
        if (::sigaction(watched[i], &action, &previous[i]) != 0) {
            while (--i >= 0)
                ::sigaction(watched[i], &previous[i], nullptr);
            writeEnd.store(-1);
            return;
        }
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, this,
                     &SignalWatcher::readSignals);
    m_active = true;
}

SignalWatcher::~SignalWatcher()
{
    if (m_active) {
        for (int i = 0; i < 3; ++i)
            ::sigaction(watched[i], &previous[i], nullptr);
        writeEnd.store(-1);
    }
    m_notifier.reset();
    for (int fd : m_pipe) {
        if (fd >= 0)
            ::close(fd);
    }
}

void SignalWatcher::readSignals()
{
    unsigned char bytes[16];
    for (;;) {
        const ssize_t count = ::read(m_pipe[0], bytes, sizeof bytes);
        if (count <= 0)
            break;
        for (ssize_t i = 0; i < count; ++i)
            emit stopRequested(bytes[i]);
    }
}

} // namespace tavero
#endif
