#include "sandbox/cli/hostrun.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/conductor.h"
#include "sandbox/cli/layout.h"
#include "sandbox/platform/otherprocess.h"
#include "sandbox/platform/stopsignal.h"

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

} // namespace

HostResult runHost(const ClientSystem& system, const std::vector<std::string>& arguments,
                   const std::filesystem::path& outputFile, const RunWatchers& watchers) {
    const Folders& folders = system.folders();
    HostResult result;
    Follower follower(folders, watchers);
    Conductor conductor(watchers.script, folders.stop());
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
    result.traces = waitForTraces(folders, tracesBefore, follower.started());
    return result;
}

} // namespace sandbox
