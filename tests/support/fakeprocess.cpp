#include "support/fakeprocess.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/clock.h"
#include "platform/debug.h"
#include "platform/modules.h"
#include "platform/process.h"

namespace {

struct FakeModule {
    fake::Exports exports;
    bool loaded = false;
    int references = 0;
};

struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::string executable;
    std::map<std::wstring, FakeModule> modules;
    std::vector<std::string> debugLines;
    fake::Waits waits = fake::Waits::real;
    std::optional<std::uint32_t> tick;
    std::uint64_t elapsed = 0; ///< milliseconds that advance and immediate waits have added
    std::int64_t wallClock = 0;
    int waiters = 0;
    int epoch = 0; ///< counts resets: a wait that an earlier test left goes on for good
};

State& state() {
    static State* const one = new State; // outlives the threads of the engine
    return *one;
}

/// Ends when `ready` holds or the fake clock has gone on by that much.
bool waitManually(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                  std::uint32_t milliseconds, const std::function<bool()>& ready) {
    std::uint64_t deadline = 0;
    int epoch = 0;
    {
        const std::lock_guard guard(state().mutex);
        deadline = state().elapsed + milliseconds;
        epoch = state().epoch;
        ++state().waiters;
        state().changed.notify_all();
    }
    const auto timeIsUp = [deadline, epoch] {
        const std::lock_guard guard(state().mutex);
        return state().epoch == epoch && state().elapsed >= deadline;
    };
    while (!ready() && !timeIsUp()) {
        condition.wait_for(lock, std::chrono::milliseconds(1));
    }
    const std::lock_guard guard(state().mutex);
    state().waiters -= state().epoch == epoch ? 1 : 0;
    return ready();
}

} // namespace

namespace fake {

void reset() {
    const std::lock_guard guard(state().mutex);
    state().executable.clear();
    state().modules.clear();
    state().debugLines.clear();
    state().waits = Waits::real;
    state().tick.reset();
    state().wallClock = 0;
    state().waiters = 0;
    ++state().epoch;
}

void setExecutable(const std::string& clientPath) {
    const std::lock_guard guard(state().mutex);
    state().executable = clientPath;
}

void addModule(const std::wstring& name, Exports exports, Presence presence) {
    const std::lock_guard guard(state().mutex);
    state().modules[name] = {std::move(exports), presence == Presence::loaded, 0};
}

void removeModule(const std::wstring& name) {
    const std::lock_guard guard(state().mutex);
    state().modules.erase(name);
}

void removeExport(const std::wstring& module, const std::string& name) {
    const std::lock_guard guard(state().mutex);
    state().modules.at(module).exports.erase(name);
}

void* load(const std::wstring& name) {
    const std::lock_guard guard(state().mutex);
    const auto found = state().modules.find(name);
    if (found == state().modules.end()) {
        return nullptr;
    }
    found->second.loaded = true;
    ++found->second.references;
    return &found->second;
}

int references(const std::wstring& name) {
    const std::lock_guard guard(state().mutex);
    return state().modules.at(name).references;
}

void setWaits(Waits waits) {
    const std::lock_guard guard(state().mutex);
    state().waits = waits;
}

void setTick(std::uint32_t tick) {
    const std::lock_guard guard(state().mutex);
    state().tick = tick;
}

void advance(std::uint32_t milliseconds) {
    const std::lock_guard guard(state().mutex);
    state().tick = state().tick.value_or(0) + milliseconds;
    state().elapsed += milliseconds;
    state().changed.notify_all();
}

void setWallClock(std::int64_t seconds) {
    const std::lock_guard guard(state().mutex);
    state().wallClock = seconds;
}

void awaitWaiters(int count) {
    std::unique_lock lock(state().mutex);
    state().changed.wait(lock, [count] { return state().waiters >= count; });
}

std::vector<std::string> debugLines() {
    const std::lock_guard guard(state().mutex);
    return state().debugLines;
}

} // namespace fake

namespace platform {

ModuleHandle findModule(const wchar_t* name) {
    const std::lock_guard guard(state().mutex);
    const auto found = state().modules.find(name);
    return found != state().modules.end() && found->second.loaded ? &found->second : nullptr;
}

ModuleHandle loadModule(const wchar_t* name) {
    return fake::load(name);
}

void freeModule(ModuleHandle module) {
    if (module) {
        const std::lock_guard guard(state().mutex);
        --static_cast<FakeModule*>(module)->references;
    }
}

void* findExport(ModuleHandle module, const char* name) {
    if (!module) {
        return nullptr;
    }
    const std::lock_guard guard(state().mutex);
    const fake::Exports& exports = static_cast<FakeModule*>(module)->exports;
    const auto found = exports.find(name);
    return found != exports.end() ? found->second : nullptr;
}

std::string executablePath() {
    const std::lock_guard guard(state().mutex);
    return state().executable;
}

void endProcess(const std::string& title, const std::string& text, int exitCode) {
    throw fake::ProcessEnded{title, text, exitCode};
}

std::uint32_t tickCount() {
    const std::lock_guard guard(state().mutex);
    return state().tick.value_or(0);
}

bool waitFor(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
             std::uint32_t milliseconds, const std::function<bool()>& ready) {
    fake::Waits waits = fake::Waits::real;
    {
        const std::lock_guard guard(state().mutex);
        waits = state().waits;
    }
    switch (waits) {
    case fake::Waits::real:
        return condition.wait_for(lock, std::chrono::milliseconds(milliseconds), ready);
    case fake::Waits::immediate:
        fake::advance(milliseconds);
        return ready();
    case fake::Waits::manual:
        break;
    }
    return waitManually(lock, condition, milliseconds, ready);
}

void sleepFor(std::uint32_t milliseconds) {
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock lock(mutex);
    waitFor(condition, lock, milliseconds, [] { return false; });
}

std::int64_t wallClock() {
    const std::lock_guard guard(state().mutex);
    return state().wallClock;
}

void debugOutput(const char* text) {
    const std::lock_guard guard(state().mutex);
    state().debugLines.emplace_back(text);
}

} // namespace platform
