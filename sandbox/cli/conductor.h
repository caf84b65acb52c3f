#pragma once

#include <chrono>
#include <filesystem>
#include <string>

#include "sandbox/cli/script.h"

namespace sandbox {

/// Walks the script, and ends the host behind its last step or when one takes too long. One
/// thread; the script, null for none, outlives it.
class Conductor {
public:
    Conductor(Script* steps, std::filesystem::path stopFile);

    void advance();

    /// The step that was still waited for when the host ended.
    std::string missed() const { return script == nullptr ? "" : script->waitsFor(); }

private:
    using Clock = std::chrono::steady_clock;

    Script* script;
    std::filesystem::path stop;
    std::string waitsFor = "nothing yet";
    Clock::time_point since = Clock::now();
    bool stopped = false;
};

} // namespace sandbox
