#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/comparison.h"
#include "sandbox/cli/hostrun.h"
#include "sandbox/cli/scenario.h"

namespace sandbox {

/// What a session has to tell programs, gathered as it goes: the members of "run --json" and
/// "host --json". One thread.
class SessionReport {
public:
    /// What is laid out, and where.
    void begin(const Scenario& scenario, const std::string& file, const ClientSystem& system);
    /// The host of the current step has ended.
    void host(const HostResult& result, const std::filesystem::path& output,
              const PhaseFacts& facts);
    /// The current step is over.
    void step(const Phase& phase, const std::vector<std::string>& differences);

    /// With all steps.
    nlohmann::json run() const;
    /// With the host that was kept running.
    nlohmann::json hosting() const;

private:
    nlohmann::json top = nlohmann::json::object();
    nlohmann::json steps = nlohmann::json::array();
    nlohmann::json current = nlohmann::json::object(); ///< members of the step under way
};

} // namespace sandbox
