#include "sandbox/cli/conductor.h"

#include <fstream>

namespace sandbox {
namespace {

constexpr auto stepLimit = std::chrono::seconds(60); // under Wine on a busy machine

} // namespace

Conductor::Conductor(Script* steps, std::filesystem::path stopFile)
    : script(steps), stop(std::move(stopFile)) {
    std::filesystem::remove(stop); // of an earlier run
}

void Conductor::advance() {
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

} // namespace sandbox
