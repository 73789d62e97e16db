#include "support/networknamespace.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tavero::test {
namespace {

const QString netnsDirectory = QStringLiteral("/run/netns");

// Paths of the namespaces this process made, kept in plain memory so the signal handler can
// remove them with async-signal-safe calls only.
constexpr int maxNamespaces = 8;
std::array<std::array<char, 128>, maxNamespaces> g_paths{};
std::array<std::atomic<bool>, maxNamespaces> g_used{};
std::array<struct sigaction, 32> g_previous{};

void removeMount(const char* path)
{
    ::umount2(path, MNT_DETACH);
    ::unlink(path);
}

void removeAllRegistered()
{
    for (int i = 0; i < maxNamespaces; ++i) {
        if (g_used[i].exchange(false))
            removeMount(g_paths[i].data());
    }
}

void onFatalSignal(int signalNumber)
{
    removeAllRegistered();
    // Hand over to whoever handled the signal before (the test framework), or die as usual.
    ::sigaction(signalNumber, &g_previous[signalNumber], nullptr);
    ::raise(signalNumber);
}

void installCleanupOnce()
{
    static const bool installed = [] {
        std::atexit(removeAllRegistered);
        for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP, SIGABRT, SIGSEGV, SIGBUS, SIGFPE}) {
            struct sigaction action {};
            action.sa_handler = onFatalSignal;
            sigemptyset(&action.sa_mask);
            action.sa_flags = SA_RESETHAND;
            ::sigaction(signalNumber, &action, &g_previous[signalNumber]);
        }
        return true;
    }();
    Q_UNUSED(installed)
}

int registerPath(const QByteArray& path)
{
    for (int i = 0; i < maxNamespaces; ++i) {
        bool expected = false;
        if (path.size() < int(g_paths[i].size()) &&
            g_used[i].compare_exchange_strong(expected, true)) {
            std::memcpy(g_paths[i].data(), path.constData(), size_t(path.size()) + 1);
            return i;
        }
    }
    return -1;
}

void unregisterPath(const QByteArray& path)
{
    for (int i = 0; i < maxNamespaces; ++i) {
        if (g_used[i] && path == g_paths[i].data())
            g_used[i] = false;
    }
}

bool runIp(const QStringList& arguments, QString* output)
{
    QProcess process;
    process.start(QStringLiteral("ip"), arguments);
    if (!process.waitForFinished(20000)) {
        process.kill();
        process.waitForFinished();
        return false;
    }
    if (output != nullptr)
        *output = QString::fromUtf8(process.readAllStandardOutput());
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        qWarning("ip %s: %s", qPrintable(arguments.join(QLatin1Char(' '))),
                 process.readAllStandardError().constData());
        return false;
    }
    return true;
}

// Namespaces named "<prefix>-<pid>" whose process is gone were left by a killed run.
void removeStale(const QString& prefix)
{
    const QStringList names =
        QDir(netnsDirectory).entryList({prefix + QStringLiteral("-*")}, QDir::Files | QDir::System);
    for (const QString& name : names) {
        bool ok = false;
        const qint64 pid = name.mid(prefix.size() + 1).toLongLong(&ok);
        if (ok && pid > 0 && ::kill(pid_t(pid), 0) != 0 && errno == ESRCH)
            runIp({QStringLiteral("netns"), QStringLiteral("delete"), name}, nullptr);
    }
}

bool sameFile(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

} // namespace

QString NetworkNamespace::unavailableReason()
{
    if (::geteuid() != 0)
        return QStringLiteral("needs root to create a network namespace");
    if (QStandardPaths::findExecutable(QStringLiteral("ip")).isEmpty())
        return QStringLiteral("needs `ip` (iproute2) for network namespaces");
    if (!runIp({QStringLiteral("netns"), QStringLiteral("list")}, nullptr))
        return QStringLiteral("`ip netns` does not work here");
    return QString();
}

NetworkNamespace::NetworkNamespace(const QString& prefix)
    : m_name(prefix + QLatin1Char('-') + QString::number(::getpid()))
{
    m_error = unavailableReason();
    if (!m_error.isEmpty())
        return;
    installCleanupOnce();
    removeStale(prefix);
    const QByteArray path = QFile::encodeName(netnsDirectory + QLatin1Char('/') + m_name);
    if (registerPath(path) < 0) {
        m_error = QStringLiteral("too many namespaces in one test process");
        return;
    }
    if (!runIp({QStringLiteral("netns"), QStringLiteral("add"), m_name}, nullptr)) {
        unregisterPath(path);
        m_error = QStringLiteral("`ip netns add %1` failed").arg(m_name);
        return;
    }
    m_made = true;
}

NetworkNamespace::~NetworkNamespace()
{
    remove();
}

void NetworkNamespace::remove()
{
    if (!m_made)
        return;
    m_made = false;
    const QByteArray path = QFile::encodeName(netnsDirectory + QLatin1Char('/') + m_name);
    if (!runIp({QStringLiteral("netns"), QStringLiteral("delete"), m_name}, nullptr))
        removeMount(path.constData());
    unregisterPath(path);
}

bool NetworkNamespace::ip(const QStringList& arguments, QString* output) const
{
    if (!m_made)
        return false;
    return runIp(QStringList{QStringLiteral("-n"), m_name} + arguments, output);
}

bool NetworkNamespace::hostIp(const QStringList& arguments, QString* output)
{
    return runIp(arguments, output);
}

bool NetworkNamespace::run(const std::function<void()>& function) const
{
    if (!m_made)
        return false;
    const QByteArray path = QFile::encodeName(netnsDirectory + QLatin1Char('/') + m_name);
    struct stat host {};
    if (::stat("/proc/self/ns/net", &host) != 0)
        return false;
    bool ran = false;
    std::thread worker([&] {
        const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            return;
        const int entered = ::setns(fd, CLONE_NEWNET);
        ::close(fd);
        struct stat target {};
        struct stat mine {};
        if (entered != 0 || ::stat(path.constData(), &target) != 0 ||
            ::stat("/proc/thread-self/ns/net", &mine) != 0)
            return;
        if (!sameFile(mine, target) || sameFile(mine, host))
            return;
        function();
        ran = true;
    });
    worker.join();
    return ran;
}

} // namespace tavero::test
