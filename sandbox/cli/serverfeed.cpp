#include "sandbox/cli/serverfeed.h"

#include <utility>

namespace sandbox {

void ServerFeed::put(const PlatformEvent& event) {
    const std::lock_guard lock(guard);
    events.push_back(event);
}

std::vector<PlatformEvent> ServerFeed::take() {
    const std::lock_guard lock(guard);
    return std::exchange(events, {});
}

} // namespace sandbox
