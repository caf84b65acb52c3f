#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/console.h"

namespace sandbox {

/// What a restart of the client's machine did.
struct MachineRestart {
    std::vector<std::string> ended;    ///< programs that kept files in use, in words
    std::vector<PendingMove> moves;    ///< that waited; with client paths below its folder
    std::vector<std::string> failures; ///< moves that did not happen, in words

    bool isGood() const { return failures.empty(); }
};

/// Restarts the client's machine: ends the programs that keep files in use, and the system
/// carries out the delayed moves. Says what happened.
MachineRestart restartMachine(ClientSystem& system, Console& console);

/// The same for programs.
nlohmann::json membersOf(const MachineRestart& restart);

/// A delayed move; without a target it is a delete, and "to" is null.
nlohmann::json membersOf(const PendingMove& move);

/// A path of the client without the folder that all begin with.
std::string belowClient(const std::string& path, const ClientSystem& system);

} // namespace sandbox
