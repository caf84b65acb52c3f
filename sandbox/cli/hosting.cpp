#include <algorithm>
#include <stdexcept>

#include "sandbox/cli/session.h"

namespace sandbox {

bool Session::host() {
    const auto run = std::find_if(scenario.phases.begin(), scenario.phases.end(),
                                  [](const Phase& phase) { return !phase.isRestart; });
    if (run == scenario.phases.end()) {
        throw std::runtime_error(scenarioFile + " has no run");
    }
    layOut();
    platform->stopJudging();
    console.heading("The host runs until Ctrl+C, or \"xsandbox stop\" from another terminal, where "
                    "\"xsandbox ui\" and \"xsandbox set\" reach it");
    Phase kept = *run;
    kept.script.clear(); // the user is there instead, and nothing is to go wrong
    kept.faults.clear();
    kept.isJudged = false;
    kept.options.erase("upgrade");
    kept.options["host"] = nlohmann::json::array();
    return runClient(kept).hostExit == 0;
}

} // namespace sandbox
