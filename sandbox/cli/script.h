#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/scriptstep.h"

namespace sandbox {

/// What the steps do to the client and ask beside its events.
struct ScriptHands {
    std::function<void(int)> command;
    std::function<void(const nlohmann::json&)> set;
    std::function<void()> release;
    std::function<bool()> isHeld;
    std::function<std::string()> clientVersion;
};

/// Walks the steps while the host runs. Waits count from the last step that did something.
/// One thread.
class Script {
public:
    Script(std::vector<ScriptStep> all, ScriptHands allHands);

    /// Takes an observation of the host's, in order.
    void see(const nlohmann::json& event);

    /// Carries out what can be: every step up to one that has to wait.
    void advance();

    bool isDone() const { return at == steps.size(); }

    /// The step that is waited for, in words; empty when all is done.
    std::string waitsFor() const;

private:
    bool carryOut(const ScriptStep& step);
    bool send(const ScriptStep& step);
    bool hasCome(const ScriptStep& step) const;
    std::size_t countSince(std::size_t begin, const ScriptStep& step) const;

    std::vector<ScriptStep> steps;
    ScriptHands hands;
    std::vector<nlohmann::json> seen;
    std::size_t at = 0;    ///< the step
    std::size_t since = 0; ///< event from which waits count
    bool sent = false;     ///< the command of the step
    bool hasBegun = false; ///< the host
};

} // namespace sandbox
