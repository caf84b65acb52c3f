#pragma once

#include <mutex>
#include <vector>

#include "sandbox/server/updateplatform.h"

namespace sandbox {

/// Carries what the platform's threads see to the thread that shows it.
class ServerFeed {
public:
    void put(const PlatformEvent& event);
    /// All events since the last call.
    std::vector<PlatformEvent> take();

private:
    std::mutex guard;
    std::vector<PlatformEvent> events;
};

} // namespace sandbox
