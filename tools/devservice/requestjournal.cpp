#include "requestjournal.h"

namespace tavero::devservice {

void RequestJournal::record(Entry entry)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_counts[entry.path];
    m_entries.push_back(std::move(entry));
    if (m_entries.size() > keptEntries)
        m_entries.pop_front();
}

std::map<std::string, int> RequestJournal::counts() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts;
}

std::deque<RequestJournal::Entry> RequestJournal::entries() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries;
}

void RequestJournal::reset()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_counts.clear();
    m_entries.clear();
}

} // namespace tavero::devservice
