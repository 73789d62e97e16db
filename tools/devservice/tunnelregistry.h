#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace tavero::devservice {

// The stand-in tunnel's control connections on a plain TCP port. A stand-in connects and sends
// one line "HELLO <remote-host> <udp|tcp>"; the registry answers "OK" and keeps the connection:
// while it is open, that tunnel counts as up. Anything else is answered "ERR" and closed.
class TunnelRegistry {
public:
    struct Tunnel {
        std::string host;
        std::string protocol;
    };

    TunnelRegistry() = default;
    TunnelRegistry(const TunnelRegistry&) = delete;
    TunnelRegistry& operator=(const TunnelRegistry&) = delete;
    ~TunnelRegistry();

    // Listens on address:port (0 picks a free port); false with `error` set when it cannot.
    bool start(const std::string& address, int port, std::string& error);
    void stop();
    int port() const { return m_port; }

    // The open tunnels, oldest first.
    std::vector<Tunnel> open() const;
    // Closes every tunnel connection, as a broken tunnel would.
    void dropAll();

private:
    struct Connection {
        int fd = -1;
        std::string buffer;
        std::optional<Tunnel> tunnel; // set once the hello was accepted
    };

    void run();
    void wake();
    void handleReadable(Connection& connection, bool& keep);

    int m_listener = -1;
    int m_wakeRead = -1;
    int m_wakeWrite = -1;
    int m_port = 0;
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;

    mutable std::mutex m_mutex;
    std::vector<Connection> m_connections; // replaced by the loop thread only, under the mutex
    bool m_dropRequested = false;
};

} // namespace tavero::devservice
