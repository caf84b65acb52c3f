#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/eventtail.h"
#include "sandbox/cli/rowtracker.h"
#include "sandbox/cli/runends.h"
#include "sandbox/cli/runview.h"
#include "sandbox/cli/script.h"
#include "sandbox/cli/serverfeed.h"
#include "sandbox/common/folders.h"

namespace sandbox {

/// What is done with the observations of one run of the host.
struct RunWatchers {
    ServerFeed& feed;
    RowTracker& tracker;
    RunView& view;
    Script* script = nullptr; ///< null for none
    bool isJudged = true;     ///< afterwards, so that all events are kept
};

/// Shows what the platform and the client tell, in the order in which it happened. The
/// two arrive apart: of what the platform has told, a transfer is held back until the
/// client's log says that it begins, and all else comes ahead of the client's next event.
/// One thread; what it is made with outlives it.
class Follower {
public:
    Follower(const Folders& folders, const RunWatchers& all);

    void follow();

    /// The host has ended: nothing is held back any longer. The events of a judged run.
    std::vector<nlohmann::json> finish();

    /// Programs that were started.
    std::size_t started() const { return programs; }

private:
    void see(nlohmann::json event);
    void show(const nlohmann::json& event);
    void tell(const char* kind);
    void showPlatform();
    bool hasBegun(const PlatformEvent& event) const;

    EventTail tail;
    RunWatchers watchers;
    RunEnds ends;
    std::deque<PlatformEvent> held;
    std::vector<nlohmann::json> kept;
    std::size_t programs = 0;
};

} // namespace sandbox
