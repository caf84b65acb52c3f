#include "sandbox/trayhost/runwatch.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char* chainStarts = "update plugin, queue, run ...";
constexpr const char* chainEnds = "update plugin, queue, run end.";
constexpr const char* runBegins = "update plugin, kelvar, task fetch, check ...";
/// The chain that writes one of these waits for ever.
constexpr const char* chainParks[] = {"update plugin, other, task run, check.",
                                      "XTaskPkgInstall check isMugeMode return "};
/// Between these two the answer is read; one that is no JSON ends the step, and its chain
/// waits for ever too.
constexpr const char* answerComes = "update plugin, pkg, task check, response:";
constexpr const char* answerIsRead = "update plugin, pkg, task check, succ:";

bool parks(const std::string& text) {
    return std::any_of(std::begin(chainParks), std::end(chainParks),
                       [&](const char* line) { return text.starts_with(line); });
}

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
    } else if (text.starts_with(answerComes)) {
        parkedChains += inAnswer.insert(std::this_thread::get_id()).second ? 0 : 1;
    } else if (text.starts_with(answerIsRead)) {
        inAnswer.erase(std::this_thread::get_id());
    } else if (parks(text)) {
        ++parkedChains;
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

bool RunWatch::idle(std::size_t lostChains) {
    MutexLock lock(mutex);
    return openChains <= parkedChains + static_cast<int>(inAnswer.size() + lostChains);
}
