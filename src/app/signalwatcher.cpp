#include "app/signalwatcher.h"

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
