#pragma once

#include <functional>

namespace tavero {

// Keeps the event loop of the calling thread running for totalMs, in slices of at most sliceMs,
// without spinning: each slice sleeps in a nested event loop until an event or the slice ends.
// Returns early once `done` answers true (checked after every slice).
void processEventsFor(int totalMs, int sliceMs = 100, const std::function<bool()>& done = {});

} // namespace tavero
