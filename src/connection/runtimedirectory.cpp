#include "connection/runtimedirectory.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QThread>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tavero {

namespace {

constexpr int stopLimitMs = 5000;

QByteArray procFile(qint64 pid, const char* name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The fields of /proc/PID/stat after the command name (which may hold blanks and parentheses):
// [0] is the state, [19] the start time in clock ticks since boot.
QList<QByteArray> statFields(qint64 pid)
{
    const QByteArray stat = procFile(pid, "stat");
    const int end = stat.lastIndexOf(')');
    return end < 0 ? QList<QByteArray>() : stat.mid(end + 2).split(' ');
}

QByteArray startTimeOf(qint64 pid)
{
    const QList<QByteArray> fields = statFields(pid);
    return fields.size() > 19 ? fields.at(19) : QByteArray();
}

// Running, as opposed to ended: a zombie has released its files (and with them the tun device).
[[maybe_unused]] bool isRunning(qint64 pid)
{
    const QList<QByteArray> fields = statFields(pid);
    return !fields.isEmpty() && fields.first() != "Z" && fields.first() != "X";
}

// True only for a process whose command line runs OpenVPN on exactly this configuration: the
// path is unique to one run in our private directory, so a pid taken by another program fails.
[[maybe_unused]] bool runsConfiguration(qint64 pid, const QString& configPath)
{
    const QList<QByteArray> arguments = procFile(pid, "cmdline").split('\0');
    for (int i = 0; i + 1 < arguments.size(); ++i) {
        if (arguments.at(i) == "--config" && arguments.at(i + 1) == QFile::encodeName(configPath))
            return true;
    }
    return false;
}

[[maybe_unused]] bool stopLeftover(qint64 pid, const QString& configPath)
{
#ifdef Q_OS_LINUX
    if (pid <= 0 || !runsConfiguration(pid, configPath))
        return false;
    qWarning().noquote() << "stopping openvpn" << pid << "left running by a client that ended";
    ::kill(pid_t(pid), SIGKILL);
    // Not our child, so there is nothing to wait on; the kernel ends it within milliseconds
    // unless closing its tun device takes longer.
    QElapsedTimer timer;
    timer.start();
    while (isRunning(pid) && timer.elapsed() < stopLimitMs)
        QThread::msleep(5);
    return true;
#else
    Q_UNUSED(pid)
    Q_UNUSED(configPath)
    return false;
#endif
}

// Creates `directory` (owner only) or accepts it when it is a real directory of this user;
// tightens its mode to 0700.
bool makePrivate(const QString& directory)
{
#ifdef Q_OS_LINUX
    const QByteArray name = QFile::encodeName(directory);
    QDir().mkpath(QFileInfo(directory).absolutePath());
    ::mkdir(name.constData(), 0700);
    struct stat info {};
    if (::lstat(name.constData(), &info) != 0 || !S_ISDIR(info.st_mode) ||
        info.st_uid != ::geteuid()) {
        return false;
    }
    return (info.st_mode & 0777) == 0700 || ::chmod(name.constData(), 0700) == 0;
#else
    return QDir().mkpath(directory);
#endif
}

} // namespace

QString RuntimeDirectory::path()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString directory =
        runtime.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                                QStringLiteral("/tavero/run")
                          : runtime + QStringLiteral("/tavero");
    if (!makePrivate(directory)) {
        qWarning().noquote() << "cannot use" << directory << "as the private runtime directory";
        return {};
    }
    return directory;
}

QString RuntimeDirectory::ownerTag()
{
    static const QString tag = [] {
        const qint64 pid = QCoreApplication::applicationPid();
        const QByteArray start = startTimeOf(pid);
        return QStringLiteral("%1-%2").arg(pid).arg(start.isEmpty() ? QStringLiteral("0")
                                                                    : QString::fromLatin1(start));
    }();
    return tag;
}

bool RuntimeDirectory::ownerRuns(const QString& tag)
{
#ifdef Q_OS_LINUX
    const int dash = tag.indexOf(QLatin1Char('-'));
    return dash > 0 && startTimeOf(tag.left(dash).toLongLong()) == tag.mid(dash + 1).toLatin1();
#else
    Q_UNUSED(tag)
    return true;
#endif
}

bool RuntimeDirectory::recordProcess(const QString& name, qint64 pid, const QString& configPath)
{
    const QString directory = path();
    if (directory.isEmpty())
        return false;
    // Written beside and renamed into place, so a reader never sees half a record; not synced to
    // the disk, because the processes it names do not outlive the machine's power either.
    const QString target = directory + QLatin1Char('/') + name + QStringLiteral(".pid");
    const QString partial = target + QStringLiteral(".new");
    QFile record(partial);
    if (!record.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    record.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const QByteArray text = QByteArray::number(pid) + '\n' + QFile::encodeName(configPath) + '\n';
    const bool written = record.write(text) == text.size() && record.flush();
    record.close();
    QFile::remove(target); // names are unique to one run; renaming never replaces
    if (written && QFile::rename(partial, target))
        return true;
    QFile::remove(partial);
    return false;
}

void RuntimeDirectory::forgetProcess(const QString& name)
{
    const QString directory = path();
    if (!directory.isEmpty())
        QFile::remove(directory + QLatin1Char('/') + name + QStringLiteral(".pid"));
}

int RuntimeDirectory::removeLeftovers()
{
#ifndef Q_OS_LINUX
    return 0; // without /proc no owner can be told alive or gone
#else
    const QString directory = path();
    if (directory.isEmpty())
        return 0;
    static const QRegularExpression ownerPattern(QStringLiteral("^(\\d+)-(\\d+)-"));
    int stopped = 0;
    const QFileInfoList entries =
        QDir(directory).entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    for (const QFileInfo& entry : entries) {
        const QRegularExpressionMatch owner = ownerPattern.match(entry.fileName());
        if (!owner.hasMatch() ||
            startTimeOf(owner.captured(1).toLongLong()) == owner.captured(2).toLatin1()) {
            continue; // not ours, or its owner still runs
        }
        if (entry.suffix() == QLatin1String("pid")) {
            QFile record(entry.absoluteFilePath());
            if (record.open(QIODevice::ReadOnly)) {
                const qint64 pid = record.readLine().trimmed().toLongLong();
                const QString configPath = QFile::decodeName(record.readLine().trimmed());
                stopped += stopLeftover(pid, configPath) ? 1 : 0;
            }
        }
        QFile::remove(entry.absoluteFilePath());
    }
    return stopped;
#endif
}

} // namespace tavero
