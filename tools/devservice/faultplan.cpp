#include "faultplan.h"

namespace tavero::devservice {

std::optional<Fault::Kind> Fault::kindFromName(const std::string& name)
{
    static const std::map<std::string, Kind> kinds{
        {"status", Kind::Status}, {"body", Kind::Body},   {"garbage", Kind::Garbage},
        {"empty", Kind::Empty},   {"close", Kind::Close}, {"delay", Kind::Delay},
    };
    const auto found = kinds.find(name);
    if (found == kinds.end())
        return std::nullopt;
    return found->second;
}

void FaultPlan::add(const std::string& path, int count, const Fault& fault)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    auto& pending = m_pending[path];
    for (int i = 0; i < count; ++i)
        pending.push_back(fault);
}

std::optional<Fault> FaultPlan::take(const std::string& path)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_pending.find(path);
    if (found == m_pending.end() || found->second.empty())
        return std::nullopt;
    Fault fault = found->second.front();
    found->second.erase(found->second.begin());
    return fault;
}

void FaultPlan::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_pending.clear();
}

} // namespace tavero::devservice
