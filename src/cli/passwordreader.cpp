#include "cli/passwordreader.h"

#include <QByteArray>
#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace tavero::cli {
namespace {

#ifdef Q_OS_WIN
// Restores the console's echo on every way out of the read.
class EchoOff {
public:
    explicit EchoOff(int fd)
        : m_console(reinterpret_cast<HANDLE>(::_get_osfhandle(fd)))
    {
        if (!GetConsoleMode(m_console, &m_saved))
            return;
        m_active = SetConsoleMode(m_console, m_saved & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
    }
    ~EchoOff()
    {
        if (m_active)
            SetConsoleMode(m_console, m_saved);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    HANDLE m_console;
    DWORD m_saved = 0;
    bool m_active = false;
};

bool isTerminal(int fd)
{
    return ::_isatty(fd) != 0;
}
#else
// Restores the terminal's echo on every way out of the read.
class EchoOff {
public:
    explicit EchoOff(int fd)
        : m_fd(fd)
    {
        if (::tcgetattr(m_fd, &m_saved) != 0)
            return;
        termios silent = m_saved;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        m_active = ::tcsetattr(m_fd, TCSAFLUSH, &silent) == 0;
    }
    ~EchoOff()
    {
        if (m_active)
            ::tcsetattr(m_fd, TCSAFLUSH, &m_saved);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    int m_fd;
    termios m_saved{};
    bool m_active = false;
};

bool isTerminal(int fd)
{
    return ::isatty(fd) != 0;
}
#endif

bool readLine(std::FILE* input, QByteArray& line)
{
    line.clear();
    for (;;) {
        const int c = std::fgetc(input);
        if (c == EOF)
            return !line.isEmpty();
        if (c == '\n')
            return true;
        line.append(static_cast<char>(c));
    }
}

} // namespace

PasswordReader::PasswordReader(std::FILE* input, std::FILE* promptStream)
    : m_input(input)
    , m_promptStream(promptStream)
{}

bool PasswordReader::read(QString& password)
{
    QByteArray line;
    bool ok = false;
    const int fd = fileno(m_input);
    if (fd >= 0 && isTerminal(fd)) {
        std::fputs("Password: ", m_promptStream);
        std::fflush(m_promptStream);
        {
            const EchoOff echoOff(fd);
            ok = readLine(m_input, line);
        }
        std::fputs("\n", m_promptStream);
    } else {
        ok = readLine(m_input, line);
    }
    if (line.endsWith('\r'))
        line.chop(1);
    password = QString::fromUtf8(line);
    line.fill('\0'); // do not leave the clear text in freed memory
    return ok;
}

} // namespace tavero::cli
