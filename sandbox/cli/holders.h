#pragma once

#include <vector>

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/runstate.h"
#include "sandbox/cli/scenario.h"

namespace sandbox {

/// Starts the programs of the scenario that keep files in use and waits until each holds
/// its files. They run on when this process ends. Throws std::runtime_error when one does
/// not get that far.
std::vector<Holder> startHolders(const Scenario& scenario, const ClientSystem& system);

/// The same of one program that keeps one file; `number` tells its output from that of others.
Holder startHolder(const ClientSystem& system, const std::string& by, const std::string& file,
                   std::size_t number);

} // namespace sandbox
