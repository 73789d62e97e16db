#include "platform/linux/linuxplatform.h"

#include "platform/platformoverrides.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QStandardPaths>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tavero {
namespace {

constexpr char elevatedVariable[] = "TAVERO_ELEVATED";
constexpr char readyMarker[] = "TAVERO_ELEVATED_READY\n";
// How long the user may take to answer the authentication dialog.
constexpr int elevationAnswerLimitMs = 180000;
constexpr int capNetAdmin = 12;

bool hasNetAdminCapability()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    while (!status.atEnd()) {
        const QByteArray line = status.readLine();
        if (line.startsWith("CapEff:")) {
            bool ok = false;
            const qulonglong caps = line.mid(7).trimmed().toULongLong(&ok, 16);
            return ok && (caps & (1ULL << capNetAdmin)) != 0;
        }
    }
    return false;
}

QByteArray ownExecutable()
{
    char buffer[4096];
    const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return length > 0 ? QByteArray(buffer, int(length)) : QByteArray();
}

// Variables the elevated copy must keep: the display, the user's configuration place (so the
// settings stay the user's, as an elevated program keeps its user's settings on Windows) and our
// own endpoint overrides.
QList<QByteArray> keptEnvironment()
{
    QList<QByteArray> kept;
    for (const char* name :
         {"DISPLAY", "XAUTHORITY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME"}) {
        if (qEnvironmentVariableIsSet(name))
            kept << QByteArray(name) + '=' + qgetenv(name);
    }
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const QByteArray assignment(*entry);
        if (assignment.startsWith("TAVERO_") && !assignment.startsWith("TAVERO_ELEVATED="))
            kept << assignment;
    }
    kept << QByteArray(elevatedVariable) + "=1";
    return kept;
}

// Waits for the elevated copy's marker on the pipe; false when pkexec ends first (declined or
// failed) or the user does not answer in time.
bool waitForElevatedCopy(pid_t child, int readEnd)
{
    QByteArray received;
    int waitedMs = 0;
    while (waitedMs < elevationAnswerLimitMs) {
        pollfd fd{readEnd, POLLIN, 0};
        const int ready = ::poll(&fd, 1, 250);
        waitedMs += 250;
        if (ready < 0 && errno != EINTR)
            break;
        if (ready > 0) {
            char buffer[256];
            const ssize_t count = ::read(readEnd, buffer, sizeof buffer);
            if (count <= 0)
                break; // the writing side closed without the marker
            received.append(buffer, int(count));
            if (received.contains(readyMarker))
                return true;
        }
        int status = 0;
        if (::waitpid(child, &status, WNOHANG) == child)
            return false;
    }
    ::kill(child, SIGTERM);
    ::waitpid(child, nullptr, 0);
    return false;
}

} // namespace

bool LinuxPlatform::isRunningAsAdministrator()
{
    if (const auto forced = PlatformOverrides::administrator())
        return *forced;
    return ::geteuid() == 0 || hasNetAdminCapability();
}

bool LinuxPlatform::elevateToAdmin()
{
    if (qEnvironmentVariableIntValue("TAVERO_NO_ELEVATE") == 1)
        return false;
    if (qEnvironmentVariableIntValue(elevatedVariable) == 1)
        return false; // this copy is already the result of an elevation: never loop
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return false;
    const QByteArray pkexec = QFile::encodeName(QStandardPaths::findExecutable("pkexec"));
    const QByteArray program = ownExecutable();
    if (pkexec.isEmpty() || program.isEmpty())
        return false;

    QList<QByteArray> arguments{pkexec, "env"};
    arguments << keptEnvironment() << program;
    std::vector<char*> argv;
    for (QByteArray& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0)
        return false;
    const pid_t child = ::fork();
    if (child < 0) {
        ::close(pipeEnds[0]);
        ::close(pipeEnds[1]);
        return false;
    }
    if (child == 0) {
        ::dup2(pipeEnds[1], STDOUT_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(pipeEnds[1]);
    const bool started = waitForElevatedCopy(child, pipeEnds[0]);
    ::close(pipeEnds[0]);
    return started;
}

void LinuxPlatform::confirmElevatedStart()
{
    if (qEnvironmentVariableIntValue(elevatedVariable) != 1)
        return;
    std::fputs(readyMarker, stdout);
    std::fflush(stdout);
    // The pipe closes with the first copy; nothing else of ours may write into it.
    const int devNull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (devNull >= 0) {
        ::dup2(devNull, STDOUT_FILENO);
        ::close(devNull);
    }
}

} // namespace tavero
