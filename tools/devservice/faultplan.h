#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tavero::devservice {

// How one reply of a path is spoiled.
struct Fault {
    enum class Kind {
        Status,  // the HTTP status with a JSON error object
        Body,    // the HTTP status with exactly the given body
        Garbage, // 200 with a body that is not JSON
        Empty,   // 200 with an empty body
        Close,   // the connection closes before a body arrives
        Delay,   // the normal reply, after delayMs
    };
    Kind kind = Kind::Status;
    int status = 500;
    std::string body;
    int delayMs = 0;

    static std::optional<Kind> kindFromName(const std::string& name);
};

// The faults planned for the next replies of each path, used up in order.
class FaultPlan {
public:
    void add(const std::string& path, int count, const Fault& fault);
    std::optional<Fault> take(const std::string& path);
    void clear();

private:
    std::mutex m_mutex;
    std::map<std::string, std::vector<Fault>> m_pending;
};

} // namespace tavero::devservice
