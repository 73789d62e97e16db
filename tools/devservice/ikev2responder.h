#pragma once

#include <mutex>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tavero::devservice {

// The IKEv2 responder of the development service: runs the ikev2-responder script (a strongSwan
// charon in a network namespace of its own, with a client namespace beside it) and puts the
// calling thread into the responder's namespace, so that the service's listeners, made
// afterwards by this thread and the threads it starts, are reached through the tunnel: callers
// from the pool count as protected. Root only. The script ends (and removes its namespaces) when
// this object goes or the process dies.
class Ikev2Responder {
public:
    // The address of the service inside the responder's namespace, the responder's own address
    // (what clients dial) and the pool it hands out.
    static constexpr char serviceAddress[] = "10.234.0.1";
    static constexpr char pool[] = "10.9.0.0/24";
    // The client namespace's end of the link (it may use the control endpoints).
    static constexpr char clientAddress[] = "10.233.0.2";

    ~Ikev2Responder();

    // `accounts` are "user:password" pairs. False with `error` set when the responder cannot run.
    bool start(const std::string& workDir, const std::string& pkiDir,
               const std::vector<std::string>& accounts, std::string& error);
    // Moves the calling thread into the responder's network namespace.
    bool enterNamespace(std::string& error) const;
    // Stops or resumes accepting new tunnels; returns once the responder has taken it in.
    // Any thread.
    bool setAccepting(bool accepting);

    const std::string& host() const { return m_host; }
    const std::string& clientNamespace() const { return m_clientNamespace; }
    // The responder's namespace; the DNS server it hands out is serviceAddress, in there.
    const std::string& serverNamespace() const { return m_serverNamespace; }

private:
    // A line of the script's output, at most `timeoutMs` away.
    bool readLine(std::string& line, int timeoutMs);

    std::mutex m_mutex; // one command at a time
    pid_t m_pid = -1;
    int m_input = -1;  // the script's standard input; closing it ends the script
    int m_output = -1; // its standard output
    std::string m_buffer;
    std::string m_host;
    std::string m_serverNamespace;
    std::string m_clientNamespace;
};

} // namespace tavero::devservice
