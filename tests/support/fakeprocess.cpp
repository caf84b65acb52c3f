#include "support/fakeprocess.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "platform/clock.h"
#include "platform/debug.h"
#include "platform/modules.h"
#include "platform/paths.h"
#include "platform/process.h"

namespace {

struct FakeModule {
    fake::Exports exports;
    bool loaded = false;
    int references = 0;
};

struct Clock {
    std::atomic<std::uint32_t> tick = 1'000'000;
    std::atomic<std::uint64_t> elapsed = 0; ///< milliseconds it was set on by

    void countWaiters(int change) {
        const std::lock_guard guard(waitersMutex);
        waiters += change;
        waitersChanged.notify_all();
    }
    void awaitWaiters(int count) {
        std::unique_lock lock(waitersMutex);
        waitersChanged.wait(lock, [&] { return waiters >= count; });
    }

private:
    // A condition, as the wait of an atomic can miss its wake-up on Windows (libstdc++ 12).
    std::mutex waitersMutex;
    std::condition_variable waitersChanged;
    int waiters = 0;
};

struct Process {
    std::string executable;
    std::map<std::wstring, FakeModule> modules;
    std::vector<std::string> debugLines;
    fake::Waits waits = fake::Waits::manual;
    std::shared_ptr<Clock> clock = std::make_shared<Clock>();
};

std::mutex mutex;
Process& one = *new Process; // outlives the threads of the engine

/// The process, for one thread at a time.
struct Locked {
    const std::lock_guard<std::mutex> guard{mutex};
    Process* operator->() const { return &one; }
};

} // namespace

namespace fake {

void reset() {
    const Locked process;
    one = {};
}

void setExecutable(const std::string& clientPath) {
    Locked()->executable = clientPath;
}

void addModule(const std::wstring& name, Exports exports, Presence presence) {
    Locked()->modules[name] = {std::move(exports), presence == Presence::loaded, 0};
}

void addExport(const std::wstring& module, const std::string& name, void* address) {
    Locked()->modules.at(module).exports[name] = address;
}

void remove(const std::wstring& module, const std::string& name) {
    const Locked process;
    if (name.empty()) {
        process->modules.erase(module);
    } else {
        process->modules.at(module).exports.erase(name);
    }
}

void* load(const std::wstring& name) {
    const Locked process;
    const auto found = process->modules.find(name);
    if (found == process->modules.end()) {
        return nullptr;
    }
    found->second.loaded = true;
    ++found->second.references;
    return &found->second;
}

int references(const std::wstring& name) {
    return Locked()->modules.at(name).references;
}

void setWaits(Waits waits) {
    Locked()->waits = waits;
}

void setTick(std::uint32_t tick) {
    Locked()->clock->tick = tick;
}

void advance(std::uint32_t milliseconds) {
    const Locked process;
    process->clock->tick += milliseconds;
    process->clock->elapsed += milliseconds;
}

void awaitWaiters(int count) {
    const std::shared_ptr<Clock> clock = Locked()->clock;
    clock->awaitWaiters(count);
}

std::vector<std::string> debugLines() {
    return Locked()->debugLines;
}

} // namespace fake

namespace platform {

ModuleHandle findModule(const wchar_t* name) {
    const Locked process;
    const auto found = process->modules.find(name);
    return found != process->modules.end() && found->second.loaded ? &found->second : nullptr;
}

ModuleHandle loadModule(const wchar_t* name) {
    return fake::load(name);
}

void freeModule(ModuleHandle module) {
    const Locked process;
    if (module) {
        --static_cast<FakeModule*>(module)->references;
    }
}

void* findExport(ModuleHandle module, const char* name) {
    const Locked process;
    if (!module) {
        return nullptr;
    }
    const fake::Exports& exports = static_cast<FakeModule*>(module)->exports;
    const auto found = exports.find(name);
    return found != exports.end() ? found->second : nullptr;
}

std::string executablePath() {
    return Locked()->executable;
}

std::string executableName() {
    return fileNameOf(executablePath());
}

void endProcess(const std::string& title, const std::string& text, int exitCode) {
    throw fake::ProcessEnded{title, text, exitCode};
}

void abortProcess() {
    throw fake::ProcessEnded{"", "", -1};
}

std::uint32_t tickCount() {
    return Locked()->clock->tick;
}

bool waitFor(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
             std::uint32_t milliseconds, const std::function<bool()>& ready) {
    if (Locked()->waits == fake::Waits::immediate) {
        fake::advance(milliseconds);
        return ready();
    }
    // A wait that an earlier test left keeps that test's clock, which stands still for good.
    const std::shared_ptr<Clock> clock = Locked()->clock;
    const std::uint64_t deadline = clock->elapsed + milliseconds;
    clock->countWaiters(1);
    while (!ready() && clock->elapsed < deadline) {
        condition.wait_for(lock, std::chrono::milliseconds(1));
    }
    clock->countWaiters(-1);
    return ready();
}

void sleepFor(std::uint32_t milliseconds) {
    std::mutex own;
    std::condition_variable never;
    std::unique_lock lock(own);
    waitFor(never, lock, milliseconds, [] { return false; });
}

std::int64_t wallClock() {
    return 0;
}

void debugOutput(const char* text) {
    Locked()->debugLines.emplace_back(text);
}

} // namespace platform
