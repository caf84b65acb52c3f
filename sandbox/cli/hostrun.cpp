#include "sandbox/cli/hostrun.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/eventtail.h"
#include "sandbox/cli/layout.h"
#include "sandbox/cli/notes.h"
#include "sandbox/platform/otherprocess.h"

namespace sandbox {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto glance = std::chrono::milliseconds(10);
constexpr auto traceLimit = std::chrono::seconds(10);

std::size_t countTraces(const Folders& folders) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(tracesFolder(folders))) {
        count += entry.path().extension() == ".json" ? 1 : 0;
    }
    return count;
}

std::size_t countStarted(const std::vector<nlohmann::json>& events) {
    std::size_t count = 0;
    for (const auto& event : events) {
        count += isKind(event, "process") && event.value("started", false) ? 1 : 0;
    }
    return count;
}

/// Programs outlive the call that starts them; their traces are waited for.
std::size_t waitForTraces(const Folders& folders, std::size_t before, std::size_t expected) {
    const auto limit = Clock::now() + traceLimit;
    std::size_t traces = countTraces(folders) - before;
    while (traces < expected && Clock::now() < limit) {
        std::this_thread::sleep_for(glance);
        traces = countTraces(folders) - before;
    }
    return traces;
}

/// Shows what the platform and the client tell, in the order in which it happened. The
/// two arrive apart: of what the platform has told, a transfer is held back until the
/// client's log says that it begins, and all else comes ahead of the client's next event.
class Follower {
public:
    Follower(const Folders& folders, ServerFeed& platformFeed, RowTracker& rowTracker,
             RunView& runView)
        : tail(folders.events()), feed(platformFeed), tracker(rowTracker), view(runView) {
        tail.next(); // what an earlier run has left
    }

    void follow() {
        for (nlohmann::json& event : tail.next()) {
            showPlatform();
            if (isKind(event, "log")) {
                tracker.see(event.value("text", ""));
            } else {
                view.host(event);
            }
            seen.push_back(std::move(event));
        }
        showPlatform();
    }

    /// The host has ended: nothing is held back any longer.
    std::vector<nlohmann::json> finish() {
        follow();
        for (const PlatformEvent& event : held) {
            view.platform(event);
        }
        tracker.end();
        view.end();
        return std::move(seen);
    }

private:
    void showPlatform() {
        for (PlatformEvent& event : feed.take()) {
            held.push_back(std::move(event));
        }
        while (!held.empty() && hasBegun(held.front())) {
            view.platform(held.front());
            held.pop_front();
        }
    }

    bool hasBegun(const PlatformEvent& event) const {
        const BuiltMaterial* material =
            event.kind == PlatformEvent::Kind::transfer ? view.byFileId(event.text) : nullptr;
        return material == nullptr || tracker.hasFetched(material->offered.md5);
    }

    EventTail tail;
    ServerFeed& feed;
    RowTracker& tracker;
    RunView& view;
    std::deque<PlatformEvent> held;
    std::vector<nlohmann::json> seen;
};

} // namespace

HostResult runHost(const ClientSystem& system, const std::vector<std::string>& arguments,
                   const std::filesystem::path& outputFile, ServerFeed& feed, RowTracker& tracker,
                   RunView& view) {
    const Folders& folders = system.folders();
    HostResult result;
    Follower follower(folders, feed, tracker, view);
    const std::size_t tracesBefore = countTraces(folders);
    const auto begin = Clock::now();
    auto host =
        system.start(folders.client() / system.programFile("trayhost"), arguments, outputFile);
    if (!host) {
        throw std::runtime_error("the host cannot be started");
    }
    while (!host->poll()) {
        follower.follow();
        result.peakMemory = std::max(result.peakMemory, peakMemoryOf(host->id()));
        std::this_thread::sleep_for(glance);
    }
    result.exit = host->wait();
    result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    result.events = follower.finish();
    result.traces = waitForTraces(folders, tracesBefore, countStarted(result.events));
    return result;
}

} // namespace sandbox
