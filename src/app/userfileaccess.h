#pragma once

#include <QString>

namespace tavero {

// While an object of this class lives, the calling thread creates, reads and changes files with
// the file-system identity of the user whose home (or folder) they go to, even in a copy that runs
// as root (one started through pkexec or sudo). Files and folders it makes in that home (~/.config
// itself on a fresh account) then belong to the user, and a link planted in the home cannot lead
// the root copy anywhere the user could not write. Only this thread is affected, and only while the
// guard lives. Does nothing in a copy without root rights and on systems without per-thread
// identities.
class UserFileAccess {
public:
    // `place`: the file or folder about to be written; its nearest existing folder tells whose it
    // is. Empty: the home.
    explicit UserFileAccess(const QString& place = QString());
    ~UserFileAccess();
    Q_DISABLE_COPY_MOVE(UserFileAccess)

    // Whose files `place` holds: the user who elevated through pkexec (PKEXEC_UID), otherwise the
    // owner of the nearest existing folder on its way (the home when `place` is empty). -1 when
    // this copy has no root rights or that folder is root's own.
    static long homeUser(const QString& place = QString());

    // Creates `file` if missing and takes every right away from group and others: the settings
    // store holds the access token. True when the file exists with owner-only rights after.
    static bool makePrivateFile(const QString& file);

    // Whether only this process's user can create, remove or rename files in `folder`: it belongs
    // to that user and is closed to everyone else's writing.
    static bool isPrivateFolder(const QString& folder);

private:
    long m_previousUid = -1;
    long m_previousGid = -1;
};

} // namespace tavero
