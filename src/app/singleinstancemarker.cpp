#include "app/singleinstancemarker.h"

#include "app/userfileaccess.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#else
#include <QCoreApplication>
#include <QLockFile>
#endif

namespace tavero {

namespace {
// Every build of the client uses this one, so any two copies find each other.
const QString programGuid = QStringLiteral("8c3e5f0a-41d7-4b6e-9a2c-d5f13e7b0c64");
} // namespace

SingleInstanceMarker::ProcessData::ProcessData(const QString& key)
    : path(lockFilePath(key))
{}

SingleInstanceMarker::ProcessData::~ProcessData()
{
#ifdef Q_OS_UNIX
    if (fd >= 0)
        ::close(fd);
#endif
}

QString SingleInstanceMarker::generateGuidedName(const QString& name)
{
    return name + QStringLiteral("_{") + programGuid + QStringLiteral("}");
}

QString SingleInstanceMarker::lockFilePath(const QString& key)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/TAVERO/") + key + QStringLiteral(".lock");
}

bool SingleInstanceMarker::check(ProcessData& processData, const QString& key)
{
    Q_UNUSED(key) // the file's name was derived from it when processData was made
    if (processData.holdsMarker)
        return false;
#ifndef Q_OS_UNIX
    // Elsewhere a lock file of the toolkit's own kind; it notices a holder that crashed.
    QDir().mkpath(QFileInfo(processData.path).absolutePath());
    processData.lockFile = std::make_unique<QLockFile>(processData.path);
    processData.lockFile->setStaleLockTime(0);
    // A holder that died leaves its file behind, and a new process may get its number again (Wine
    // hands them out in the same order in every session): the toolkit would then count the file
    // as held by a live copy of this program. Naming this very process, it cannot be.
    qint64 holder = 0;
    if (processData.lockFile->getLockInfo(&holder, nullptr, nullptr) &&
        holder == QCoreApplication::applicationPid())
        processData.lockFile->removeStaleLockFile();
    processData.holdsMarker = processData.lockFile->tryLock(0);
    return !processData.holdsMarker && processData.lockFile->error() == QLockFile::LockFailedError;
#else
    if (processData.fd < 0) {
        // A root copy makes the folder and the file as the user, so the user's copies can open it.
        const UserFileAccess asHomeUser(processData.path);
        QDir().mkpath(QFileInfo(processData.path).absolutePath());
        processData.fd = ::open(QFile::encodeName(processData.path).constData(),
                                O_RDONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (processData.fd < 0)
            return false; // not reported: this copy just runs
    }
    int result = 0;
    do {
        result = ::flock(processData.fd, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result == 0) {
        processData.holdsMarker = true;
        return false;
    }
    return errno == EWOULDBLOCK;
#endif
}

bool SingleInstanceMarker::attach(const QString& name)
{
    const QString key = generateGuidedName(name);
    std::shared_ptr<ProcessData>& data = processesDataMap_()[key];
    if (!data)
        data = std::make_shared<ProcessData>(key);
    return check(*data, key);
}

bool SingleInstanceMarker::check(const QString& name)
{
    const QString key = generateGuidedName(name);
    ProcessData data(key);
    return check(data, key);
}

std::map<QString, std::shared_ptr<SingleInstanceMarker::ProcessData>>&
SingleInstanceMarker::processesDataMap_()
{
    static std::map<QString, std::shared_ptr<ProcessData>> map;
    return map;
}

} // namespace tavero
