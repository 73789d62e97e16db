#include "platform/platformoverrides.h"

#include <atomic>

namespace tavero {
namespace {
// -1 unset, 0 false, 1 true: atomics keep the answers readable from the IKEv2 worker thread.
std::atomic<int> g_administrator{-1};
std::atomic<int> g_rdpListening{-1};

std::optional<bool> read(const std::atomic<int>& value)
{
    const int v = value.load();
    return v < 0 ? std::nullopt : std::optional<bool>(v == 1);
}

int encode(std::optional<bool> answer)
{
    return answer ? (*answer ? 1 : 0) : -1;
}
} // namespace

std::optional<bool> PlatformOverrides::administrator()
{
    return read(g_administrator);
}
void PlatformOverrides::setAdministrator(std::optional<bool> answer)
{
    g_administrator = encode(answer);
}

std::optional<bool> PlatformOverrides::rdpListening()
{
    return read(g_rdpListening);
}
void PlatformOverrides::setRdpListening(std::optional<bool> answer)
{
    g_rdpListening = encode(answer);
}

} // namespace tavero
