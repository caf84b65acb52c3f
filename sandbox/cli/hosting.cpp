#include <algorithm>
#include <stdexcept>

#include "sandbox/cli/session.h"

namespace sandbox {

bool Session::host(std::uint32_t interval) {
    const auto first = std::find_if(scenario.phases.begin(), scenario.phases.end(),
                                    [](const Phase& phase) { return !phase.isRestart; });
    if (first == scenario.phases.end()) {
        throw std::runtime_error(scenarioFile + " has no run");
    }
    layOut();
    platform->stopJudging();
    console.heading("The host runs until Ctrl+C, or \"xsandbox stop\" from another terminal, where "
                    "\"xsandbox ui\" and \"xsandbox set\" reach it");
    Phase kept = *first;
    kept.script.clear(); // the user is there instead, and nothing is to go wrong
    kept.faults.clear();
    kept.isJudged = false;
    kept.options.erase("upgrade");
    kept.options["host"] = nlohmann::json::array({"--interval", std::to_string(interval)});
    return runClient(kept).hostExit == 0;
}

} // namespace sandbox
