#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/follower.h"

namespace sandbox {

/// What came of one run of the host.
struct HostResult {
    int exit = -1;
    double seconds = 0;
    std::uint64_t peakMemory = 0;       ///< bytes
    std::vector<nlohmann::json> events; ///< of a judged run
    std::size_t traces = 0;             ///< of programs that it started
    std::string missed; ///< the step of the script that did not come; empty for none
};

/// Runs the client's host with these arguments to its end and shows what happens. Its
/// output goes to `outputFile`. A script that has steps is walked meanwhile, and its end
/// ends the host. Throws std::runtime_error when it cannot be started.
HostResult runHost(const ClientSystem& system, const std::vector<std::string>& arguments,
                   const std::filesystem::path& outputFile, const RunWatchers& watchers);

} // namespace sandbox
