#pragma once

#include <deque>
#include <map>
#include <mutex>
#include <string>

namespace tavero::devservice {

// Counts the requests per path and keeps the last few in full, for tests that check what the
// client sent.
class RequestJournal {
public:
    struct Entry {
        std::string method;
        std::string path;
        std::string target; // path with query, as sent
        std::string authorization;
        std::string accept;
        std::string contentType;
        std::string body;
        int clientPort = -1; // the same port means the same (kept-alive) connection
    };

    static constexpr std::size_t keptEntries = 500;

    void record(Entry entry);
    std::map<std::string, int> counts() const;
    std::deque<Entry> entries() const;
    void reset();

private:
    mutable std::mutex m_mutex;
    std::map<std::string, int> m_counts;
    std::deque<Entry> m_entries;
};

} // namespace tavero::devservice
