#include "sandbox/cli/hostrun.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/layout.h"
#include "sandbox/cli/notes.h"
#include "sandbox/platform/childprocess.h"
#include "sandbox/platform/otherprocess.h"
#include "sandbox/platform/programnames.h"

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

void follow(EventTail& tail, ServerFeed& feed, RowTracker& tracker, RunView& view,
            std::vector<nlohmann::json>& all) {
    for (const PlatformEvent& event : feed.take()) {
        view.platform(event);
    }
    for (nlohmann::json& event : tail.next()) {
        if (isKind(event, "log")) {
            tracker.see(event.value("text", ""));
        } else {
            view.host(event);
        }
        all.push_back(std::move(event));
    }
}

} // namespace

HostResult runHost(const Folders& folders, const std::vector<std::string>& arguments,
                   const std::filesystem::path& outputFile, ServerFeed& feed, RowTracker& tracker,
                   RunView& view) {
    HostResult result;
    EventTail tail(folders.events());
    tail.next(); // what an earlier run has left
    const std::size_t tracesBefore = countTraces(folders);
    const auto begin = Clock::now();
    auto host = ChildProcess::start(folders.client() / programFile("trayhost"), arguments,
                                    folders.client(), outputFile);
    if (!host) {
        throw std::runtime_error("the host cannot be started");
    }
    while (!host->poll()) {
        follow(tail, feed, tracker, view, result.events);
        result.peakMemory = std::max(result.peakMemory, peakMemoryOf(host->id()));
        std::this_thread::sleep_for(glance);
    }
    result.exit = host->wait();
    result.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    follow(tail, feed, tracker, view, result.events);
    tracker.end();
    view.end();
    result.traces = waitForTraces(folders, tracesBefore, countStarted(result.events));
    return result;
}

} // namespace sandbox
