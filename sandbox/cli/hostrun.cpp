#include "sandbox/cli/hostrun.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/eventtail.h"
#include "sandbox/cli/layout.h"
#include "sandbox/cli/notes.h"
#include "sandbox/cli/runends.h"
#include "sandbox/platform/otherprocess.h"
#include "sandbox/platform/stopsignal.h"

namespace sandbox {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto glance = std::chrono::milliseconds(10);
constexpr auto traceLimit = std::chrono::seconds(10);
constexpr auto stepLimit = std::chrono::seconds(60); // under Wine on a busy machine

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
             RunView& runView, Script* steps)
        : tail(folders.events()), feed(platformFeed), tracker(rowTracker), view(runView),
          script(steps) {
        tail.next(); // what an earlier run has left
    }

    void follow() {
        for (nlohmann::json& event : tail.next()) {
            showPlatform();
            show(event);
            if (script != nullptr) {
                script->see(event);
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
    void show(const nlohmann::json& event) {
        if (!isKind(event, "log")) {
            view.host(event);
            return;
        }
        const std::string text = event.value("text", "");
        tracker.see(text);
        view.log(text);
        switch (ends.see(event)) {
        case RunEnds::What::begins:
            view.beginRun();
            break;
        case RunEnds::What::ends:
            view.endRun();
            tell("runEnded");
            break;
        case RunEnds::What::packageEnds:
            tell("packageEnded");
            break;
        case RunEnds::What::nothing:
            break;
        }
    }

    void tell(const char* kind) {
        if (script != nullptr) {
            script->see({{"kind", kind}});
        }
    }

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
    Script* script;
    RunEnds ends;
    std::deque<PlatformEvent> held;
    std::vector<nlohmann::json> seen;
};

/// Walks the script, and ends the host behind its last step or when one takes too long.
class Conductor {
public:
    Conductor(Script* steps, std::filesystem::path stopFile)
        : script(steps), stop(std::move(stopFile)) {
        std::filesystem::remove(stop); // of an earlier run
    }

    void advance() {
        if (script == nullptr || stopped) {
            return;
        }
        script->advance();
        if (const std::string now = script->waitsFor(); now != waitsFor) {
            waitsFor = now;
            since = Clock::now();
        }
        if (script->isDone() || Clock::now() - since > stepLimit) {
            stopped = true;
            std::ofstream(stop) << "the script has ended\n";
        }
    }

    /// The step that was still waited for when the host ended.
    std::string missed() const { return script == nullptr ? "" : script->waitsFor(); }

private:
    Script* script;
    std::filesystem::path stop;
    std::string waitsFor = "nothing yet";
    Clock::time_point since = Clock::now();
    bool stopped = false;
};

} // namespace

HostResult runHost(const ClientSystem& system, const std::vector<std::string>& arguments,
                   const std::filesystem::path& outputFile, ServerFeed& feed, RowTracker& tracker,
                   RunView& view, Script* script) {
    const Folders& folders = system.folders();
    HostResult result;
    Follower follower(folders, feed, tracker, view, script);
    Conductor conductor(script, folders.stop());
    const std::size_t tracesBefore = countTraces(folders);
    const auto begin = Clock::now();
    auto host =
        system.start(folders.client() / system.programFile("trayhost"), arguments, outputFile);
    if (!host) {
        throw std::runtime_error("the host cannot be started");
    }
    while (!host->poll()) {
        follower.follow();
        conductor.advance();
        if (stopSignalled()) {
            std::ofstream(folders.stop()) << "the user has ended the run\n";
        }
        result.peakMemory = std::max(result.peakMemory, peakMemoryOf(host->id()));
        std::this_thread::sleep_for(glance);
    }
    result.exit = host->wait();
    result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    result.events = follower.finish();
    result.missed = conductor.missed();
    result.traces = waitForTraces(folders, tracesBefore, countStarted(result.events));
    return result;
}

} // namespace sandbox
