#include "ikev2responder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <regex>
#include <sched.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace tavero::devservice {

Ikev2Responder::~Ikev2Responder()
{
    if (m_input >= 0)
        ::close(m_input); // the script's signal to clean up
    if (m_pid > 0) {
        for (int waited = 0; waited < 1500; ++waited) {
            if (::waitpid(m_pid, nullptr, WNOHANG) == m_pid) {
                m_pid = -1;
                break;
            }
            ::usleep(10000);
        }
        if (m_pid > 0) {
            ::kill(m_pid, SIGTERM);
            ::waitpid(m_pid, nullptr, 0);
        }
    }
    if (m_output >= 0)
        ::close(m_output);
}

bool Ikev2Responder::readLine(std::string& line, int timeoutMs)
{
    for (;;) {
        const size_t end = m_buffer.find('\n');
        if (end != std::string::npos) {
            line = m_buffer.substr(0, end);
            m_buffer.erase(0, end + 1);
            return true;
        }
        pollfd ready{m_output, POLLIN, 0};
        const int polled = ::poll(&ready, 1, timeoutMs);
        if (polled < 0 && errno == EINTR)
            continue;
        if (polled <= 0)
            return false;
        char chunk[512];
        const ssize_t count = ::read(m_output, chunk, sizeof chunk);
        if (count <= 0)
            return false;
        m_buffer.append(chunk, size_t(count));
    }
}

bool Ikev2Responder::start(const std::string& workDir, const std::string& pkiDir,
                           const std::vector<std::string>& accounts, std::string& error)
{
    if (::geteuid() != 0) {
        error = "the IKEv2 responder needs root (network namespaces)";
        return false;
    }
    int input[2];
    int output[2];
    if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0) {
        error = "no pipe for the IKEv2 responder";
        return false;
    }
    const std::string script = std::string(TAVERO_DEVSERVICE_SOURCE_DIR) + "/ikev2-responder";
    std::vector<std::string> arguments{script, "serve", workDir, pkiDir};
    arguments.insert(arguments.end(), accounts.begin(), accounts.end());
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    // The service blocks its stop signals in every thread; the script must get them.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    const int spawned =
        posix_spawn(&m_pid, script.c_str(), &actions, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(input[0]);
    ::close(output[1]);
    m_input = input[1];
    m_output = output[0];
    if (spawned != 0) {
        m_pid = -1;
        error = "cannot run " + script;
        return false;
    }
    std::string line;
    if (!readLine(line, 60000)) {
        error = "the IKEv2 responder did not start (see above)";
        return false;
    }
    static const std::regex ready("READY client=(\\S+) server=(\\S+) host=(\\S+).*");
    std::smatch match;
    if (!std::regex_match(line, match, ready)) {
        error = "unexpected answer of the IKEv2 responder: " + line;
        return false;
    }
    m_clientNamespace = match[1];
    m_serverNamespace = match[2];
    m_host = match[3];
    return true;
}

bool Ikev2Responder::enterNamespace(std::string& error) const
{
    const std::string path = "/run/netns/" + m_serverNamespace;
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool entered = fd >= 0 && ::setns(fd, CLONE_NEWNET) == 0;
    if (fd >= 0)
        ::close(fd);
    if (!entered)
        error = "cannot enter the network namespace " + m_serverNamespace;
    return entered;
}

bool Ikev2Responder::setAccepting(bool accepting)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_input < 0)
        return false;
    const std::string command = accepting ? "accept\n" : "refuse\n";
    if (::write(m_input, command.data(), command.size()) != ssize_t(command.size()))
        return false;
    std::string line;
    return readLine(line, 20000) && line == "DONE";
}

} // namespace tavero::devservice
