#include "tunnelregistry.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sstream>
#include <sys/socket.h>
#include <unistd.h>

namespace tavero::devservice {

namespace {

constexpr std::size_t maxHelloLength = 512;

void closeFd(int& fd)
{
    if (fd >= 0)
        ::close(fd);
    fd = -1;
}

void sendText(int fd, const char* text)
{
    // A stand-in that vanished mid-reply is simply dropped; no SIGPIPE.
    (void)::send(fd, text, std::strlen(text), MSG_NOSIGNAL);
}

} // namespace

TunnelRegistry::~TunnelRegistry()
{
    stop();
}

bool TunnelRegistry::start(const std::string& address, int port, std::string& error)
{
    sockaddr_in bindAddress{};
    bindAddress.sin_family = AF_INET;
    bindAddress.sin_port = htons(static_cast<uint16_t>(port));
    if (inet_pton(AF_INET, address.c_str(), &bindAddress.sin_addr) != 1) {
        error = "tunnel port: not an IPv4 address: " + address;
        return false;
    }
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(m_listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    ::setsockopt(m_listener, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (::bind(m_listener, reinterpret_cast<sockaddr*>(&bindAddress), sizeof bindAddress) != 0 ||
        ::listen(m_listener, 16) != 0) {
        error = "tunnel port: " + std::string(std::strerror(errno));
        closeFd(m_listener);
        return false;
    }
    socklen_t length = sizeof bindAddress;
    ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&bindAddress), &length);
    m_port = ntohs(bindAddress.sin_port);

    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC | O_NONBLOCK) != 0) {
        error = "tunnel port: " + std::string(std::strerror(errno));
        closeFd(m_listener);
        return false;
    }
    m_wakeRead = pipeFds[0];
    m_wakeWrite = pipeFds[1];
    m_thread = std::thread([this] { run(); });
    return true;
}

void TunnelRegistry::stop()
{
    if (!m_thread.joinable())
        return;
    m_stopping = true;
    wake();
    m_thread.join();
    closeFd(m_listener);
    closeFd(m_wakeRead);
    closeFd(m_wakeWrite);
}

std::vector<TunnelRegistry::Tunnel> TunnelRegistry::open() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<Tunnel> tunnels;
    if (m_dropRequested)
        return tunnels; // the loop has not closed them yet, but they are gone
    for (const Connection& connection : m_connections) {
        if (connection.tunnel)
            tunnels.push_back(*connection.tunnel);
    }
    return tunnels;
}

void TunnelRegistry::dropAll()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_dropRequested = true;
    }
    wake();
}

void TunnelRegistry::wake()
{
    // A full pipe already holds a wake-up, so a failed write loses nothing.
    if (m_wakeWrite >= 0 && ::write(m_wakeWrite, "x", 1) < 0)
        return;
}

void TunnelRegistry::handleReadable(Connection& connection, bool& keep)
{
    char chunk[256];
    const ssize_t received = ::recv(connection.fd, chunk, sizeof chunk, 0);
    if (received <= 0) {
        keep = false; // closed: the tunnel is gone
        return;
    }
    if (connection.tunnel)
        return; // nothing more is expected; extra bytes are ignored
    connection.buffer.append(chunk, static_cast<std::size_t>(received));
    const auto newline = connection.buffer.find('\n');
    if (newline == std::string::npos) {
        if (connection.buffer.size() > maxHelloLength) {
            sendText(connection.fd, "ERR\n");
            keep = false;
        }
        return;
    }
    std::istringstream line(connection.buffer.substr(0, newline));
    std::string word, host, protocol, extra;
    line >> word >> host >> protocol >> extra;
    if (word != "HELLO" || host.empty() || (protocol != "udp" && protocol != "tcp") ||
        !extra.empty()) {
        sendText(connection.fd, "ERR\n");
        keep = false;
        return;
    }
    sendText(connection.fd, "OK\n");
    connection.tunnel = Tunnel{host, protocol};
}

void TunnelRegistry::run()
{
    while (!m_stopping) {
        std::vector<pollfd> fds{{m_listener, POLLIN, 0}, {m_wakeRead, POLLIN, 0}};
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            for (const Connection& connection : m_connections)
                fds.push_back({connection.fd, POLLIN, 0});
        }
        if (::poll(fds.data(), fds.size(), -1) < 0 && errno != EINTR)
            break;
        if (fds[1].revents & POLLIN) {
            char drain[64];
            while (::read(m_wakeRead, drain, sizeof drain) > 0) {
            }
        }

        // Sockets are only read when poll said so and answers are three bytes: nothing here
        // blocks, so the whole pass runs under the lock that open() takes.
        const std::lock_guard<std::mutex> lock(m_mutex);
        const bool drop = m_dropRequested;
        m_dropRequested = false;
        std::vector<Connection> kept;
        for (std::size_t i = 0; i < m_connections.size(); ++i) {
            Connection& connection = m_connections[i];
            bool keep = !drop && !m_stopping;
            if (keep && (fds[i + 2].revents & (POLLIN | POLLHUP | POLLERR)))
                handleReadable(connection, keep);
            if (keep)
                kept.push_back(std::move(connection));
            else
                closeFd(connection.fd);
        }
        if (fds[0].revents & POLLIN) {
            const int fd = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
            if (fd >= 0) {
                const int on = 1;
                ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
                kept.push_back(Connection{fd, {}, std::nullopt});
            }
        }
        m_connections = std::move(kept);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (Connection& connection : m_connections)
        closeFd(connection.fd);
    m_connections.clear();
}

} // namespace tavero::devservice
