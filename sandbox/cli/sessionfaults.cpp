#include "sandbox/cli/holders.h"
#include "sandbox/cli/runstate.h"
#include "sandbox/cli/session.h"
#include "sandbox/faults/clientfaults.h"
#include "sandbox/faults/faultlog.h"

namespace sandbox {
namespace {

constexpr const char* inUse = "in-use";

} // namespace

/// Starts what the client's side carries out.
void Session::beginFaults(const Phase& phase) {
    layOutClientFaults(folders, phasesDone + 1, phase.faults);
    for (const Fault& fault : phase.faults) {
        if (fault.name == inUse) {
            RunState state = readRunState(folders);
            state.holders.push_back(startHolder(system, fault.text("by"), fault.text("file"),
                                                state.holders.size() + 1));
            saveRunState(folders, state);
            logFault(folders.faults(), phasesDone + 1, fault, 1);
        }
    }
}

RunFaults Session::serverFaults(const Phase& phase) {
    return {phase.faults, [this, number = phasesDone + 1](const Fault& fault, std::size_t attempt) {
                logFault(folders.faults(), number, fault, attempt);
            }};
}

/// What was to go wrong on the client's side and did not is a complaint, as on the servers'.
void Session::endFaults(const Phase& phase, std::vector<std::string>& complaints) {
    const std::vector<nlohmann::json> lines = readFaultLog(folders.faults());
    for (const Fault& fault : phase.faults) {
        if (isOfClient(fault) && !hasTakenEffect(lines, phasesDone + 1, fault)) {
            complaints.push_back("the fault " + fault.title() + " never took effect");
        }
    }
    layOutClientFaults(folders, phasesDone + 1, {});
}

} // namespace sandbox
