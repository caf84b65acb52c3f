#include "sandbox/trayhost/runwatch.h"

namespace {

constexpr const char* chainStarts = "update plugin, queue, run ...";
constexpr const char* chainEnds = "update plugin, queue, run end.";
constexpr const char* runBegins = "update plugin, kelvar, task fetch, check ...";

} // namespace

void RunWatch::line(const std::string& text) {
    MutexLock lock(mutex);
    if (text.starts_with(chainStarts)) {
        ++openChains;
    } else if (text.starts_with(runBegins)) {
        inRun.insert(std::this_thread::get_id());
        ++begun;
    } else if (text.starts_with(chainEnds)) {
        --openChains;
        ended += static_cast<int>(inRun.erase(std::this_thread::get_id()));
    }
}

int RunWatch::begunRuns() {
    MutexLock lock(mutex);
    return begun;
}

int RunWatch::endedRuns() {
    MutexLock lock(mutex);
    return ended;
}

bool RunWatch::idle() {
    MutexLock lock(mutex);
    return openChains <= 0;
}
