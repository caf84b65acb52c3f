#include "sandbox/trayhost/host.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iostream>
#include <thread>

#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/faults/clientfaults.h"
#include "sandbox/modules/xnbase/listener.h"
#include "sandbox/platform/heap.h"
#include "sandbox/platform/stopsignal.h"
#include "sandbox/trayhost/modules.h"
#include "utils/mutex.h"

namespace {

constexpr std::uint32_t poll = 10;
/// One idle look can fall between a log line and the call that it announces.
constexpr int settledLooks = 3;

constexpr std::uint32_t modulePoll = 20;
constexpr std::uint32_t heapTicks = 20; ///< from one look at the heap to the next

void sleepMilliseconds(std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void report(const char* what, std::uint32_t n) {
    sandbox::emit({{"kind", "host"}, {"what", what}, {"n", n}});
}

void reportTick(std::uint32_t n) {
    nlohmann::json event{{"kind", "host"}, {"what", "tick"}, {"n", n}};
    if (n % heapTicks == 0) {
        event["allocated"] = sandbox::allocatedBytes();
    }
    sandbox::emit(std::move(event));
}

/// While it lives, the client's modules take in what other processes of the run do, on a
/// thread of its own: a tick may last for several tenths of a second.
class ModulePolls {
public:
    ModulePolls() : polls(exportsOfClientModules("sandboxPoll")), thread([this] { loop(); }) {}
    ~ModulePolls() {
        finished = true;
        thread.join();
    }
    ModulePolls(const ModulePolls&) = delete;
    ModulePolls& operator=(const ModulePolls&) = delete;

    void now() {
        const MutexLock lock(polling);
        for (void* module : polls) {
            reinterpret_cast<sandbox::Poll>(module)();
        }
    }

private:
    void loop() {
        for (; !finished; sleepMilliseconds(modulePoll)) {
            now();
        }
    }

    const std::vector<void*> polls;
    Mutex polling; ///< a module is called by one thread at a time
    std::atomic<bool> finished{false};
    std::thread thread;
};

} // namespace

Host::Host(const HostOptions& wanted) : options(wanted), started(sandbox::monotonicMilliseconds()) {
    const auto takeLine = [](const char*, const char* text, void* host) {
        static_cast<Host*>(host)->watch.line(text);
    };
    const auto listeners = exportsOfClientModules("sandboxSetLogListener");
    for (void* listen : listeners) {
        reinterpret_cast<sandbox::SetLogListener>(listen)(takeLine, this);
    }
    if (listeners.empty() && options.runs) {
        std::cerr << "trayhost: without xnbase.dll there is no log to count runs by\n";
    }
}

bool Host::isFinished() {
    return sandbox::stopSignalled() || std::filesystem::exists(sandbox::processFolders().stop()) ||
           (options.ticks && ticks >= *options.ticks) ||
           (options.runs && watch.endedRuns() >= *options.runs);
}

bool Host::mayTick() {
    return !(options.runs && watch.begunRuns() >= *options.runs);
}

bool Host::isPastLimit() const {
    return options.limit && sandbox::monotonicMilliseconds() - started >= *options.limit;
}

ExitStatus Host::drive(const std::function<void()>& tick) {
    ModulePolls modulePolls;
    report("start", 0);
    ExitStatus status = exitDone;
    for (std::int64_t due = 0; !isFinished(); sleepMilliseconds(poll)) {
        if (isPastLimit()) {
            std::cerr << "trayhost: the limit of " << *options.limit << " ms has come\n";
            status = exitLimit;
            break;
        }
        if (tick && mayTick() && sandbox::monotonicMilliseconds() >= due) {
            if (sandbox::reachTick(sandbox::processFolders(), ticks + 1)) {
                modulePolls.now(); // a fault that begins with a tick is there when it comes
            }
            tick();
            reportTick(++ticks);
            due = sandbox::monotonicMilliseconds() + options.interval;
        }
    }
    report("stop", ticks);
    std::cerr << "trayhost: stopped after " << ticks << " ticks and " << watch.endedRuns()
              << " runs\n";
    return status;
}

bool Host::isIdle() {
    const auto modules = exportsOfClientModules("sandboxIdle");
    return watch.idle(sandbox::lostChains()) &&
           std::all_of(modules.begin(), modules.end(),
                       [](void* idle) { return reinterpret_cast<sandbox::Idle>(idle)(); });
}

bool Host::settle(std::int64_t milliseconds) {
    const std::int64_t end = sandbox::monotonicMilliseconds() + milliseconds;
    for (int looks = 0; looks < settledLooks; sleepMilliseconds(poll)) {
        looks = isIdle() ? looks + 1 : 0;
        if (sandbox::monotonicMilliseconds() > end) {
            std::cerr << "trayhost: the plug-in is still busy after " << milliseconds << " ms\n";
            return false;
        }
    }
    return true;
}
