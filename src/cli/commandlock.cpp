#include "cli/commandlock.h"

#include <QCoreApplication>
#include <QFile>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace tavero::cli {

CommandLock::CommandLock(QString path)
    : m_path(std::move(path))
{}

CommandLock::~CommandLock()
{
    if (m_handle == -1)
        return;
#ifdef Q_OS_WIN
    ::CloseHandle(reinterpret_cast<HANDLE>(m_handle));
#else
    ::close(int(m_handle)); // releases the lock
#endif
}

CommandLock::State CommandLock::tryLock()
{
    if (m_handle != -1)
        return State::Held;
    const QByteArray pid = QByteArray::number(QCoreApplication::applicationPid()) + '\n';
#ifdef Q_OS_WIN
    // No sharing: a second open fails while this handle lives, and the handle dies with us.
    const HANDLE handle = ::CreateFileW(reinterpret_cast<const wchar_t*>(m_path.utf16()),
                                        GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return ::GetLastError() == ERROR_SHARING_VIOLATION ? State::Busy : State::Failed;
    // The holder's process number, for a person who finds the file.
    DWORD written = 0;
    ::SetEndOfFile(handle);
    ::WriteFile(handle, pid.constData(), DWORD(pid.size()), &written, nullptr);
    m_handle = reinterpret_cast<qintptr>(handle);
#else
    // Close-on-exec: an openvpn started by the holder must not keep the lock after it.
    const int fd =
        ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return State::Failed;
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const bool busy = errno == EWOULDBLOCK;
        ::close(fd);
        return busy ? State::Busy : State::Failed;
    }
    // The holder's process number, for a person who finds the file.
    if (::ftruncate(fd, 0) != 0 || ::write(fd, pid.constData(), size_t(pid.size())) < 0)
        qDebug("cannot note the holder in %s", qPrintable(m_path));
    m_handle = fd;
#endif
    return State::Held;
}

} // namespace tavero::cli
