#pragma once

#include <QString>

namespace tavero::cli {

// The lock a command holds while it manages the tunnel. The system releases it when its holder
// ends, however it ends (SIGKILL included), so a lock is never left stale and nothing has to judge
// whether its owner still lives. Taking it writes nothing that must reach the disk first.
class CommandLock {
public:
    enum class State { Held, Busy, Failed };

    explicit CommandLock(QString path);
    ~CommandLock();
    CommandLock(const CommandLock&) = delete;
    CommandLock& operator=(const CommandLock&) = delete;

    // Takes the lock without waiting: Busy when another holder has it, Failed when the file
    // cannot be opened.
    State tryLock();

private:
    QString m_path;
    qintptr m_handle = -1; // the open file (descriptor or handle) while held
};

} // namespace tavero::cli
