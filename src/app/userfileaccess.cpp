#include "app/userfileaccess.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <fcntl.h>
#include <pwd.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tavero {

#ifdef Q_OS_LINUX
namespace {
gid_t primaryGroupOf(uid_t uid, gid_t fallback)
{
    const passwd* entry = ::getpwuid(uid);
    return entry != nullptr ? entry->pw_gid : fallback;
}
} // namespace

long UserFileAccess::homeUser(const QString& place)
{
    if (::geteuid() != 0)
        return -1;
    bool ok = false;
    const long elevating = qEnvironmentVariable("PKEXEC_UID").toLong(&ok);
    if (ok && elevating > 0)
        return elevating;
    QString folder = place.isEmpty() ? QDir::homePath() : QFileInfo(place).absoluteFilePath();
    struct stat owner {};
    while (::stat(QFile::encodeName(folder).constData(), &owner) != 0) {
        const QString parent = QFileInfo(folder).absolutePath();
        if (parent == folder)
            return -1;
        folder = parent;
    }
    return owner.st_uid == 0 ? -1 : long(owner.st_uid);
}

UserFileAccess::UserFileAccess(const QString& place)
{
    const long user = homeUser(place);
    if (user < 0)
        return;
    const auto uid = uid_t(user);
    // The group first: once the user identity is taken, changing the group is no longer allowed.
    m_previousGid = ::setfsgid(primaryGroupOf(uid, uid));
    m_previousUid = ::setfsuid(uid);
}

UserFileAccess::~UserFileAccess()
{
    if (m_previousUid >= 0)
        ::setfsuid(uid_t(m_previousUid));
    if (m_previousGid >= 0)
        ::setfsgid(gid_t(m_previousGid));
}

bool UserFileAccess::makePrivateFile(const QString& file)
{
    const int fd = ::open(QFile::encodeName(file).constData(),
                          O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (fd < 0)
        return false;
    struct stat status {};
    const bool ok = ::fstat(fd, &status) == 0 &&
                    ((status.st_mode & 077) == 0 || ::fchmod(fd, status.st_mode & 0700) == 0);
    ::close(fd);
    return ok;
}

bool UserFileAccess::isPrivateFolder(const QString& folder)
{
    struct stat status {};
    return ::stat(QFile::encodeName(folder).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}
#else
bool UserFileAccess::isPrivateFolder(const QString&)
{
    return true; // per-user folders and access lists decide elsewhere
}

long UserFileAccess::homeUser(const QString&)
{
    return -1;
}
UserFileAccess::UserFileAccess(const QString&) {}
UserFileAccess::~UserFileAccess() = default;
bool UserFileAccess::makePrivateFile(const QString& file)
{
    QFile store(file);
    return store.exists() || store.open(QIODevice::WriteOnly);
}
#endif

} // namespace tavero
