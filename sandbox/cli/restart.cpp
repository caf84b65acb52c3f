#include "sandbox/cli/restart.h"

#include <algorithm>

#include "sandbox/cli/runstate.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr std::size_t sourceWidth = 40;

void tell(const MachineRestart& restart, Console& console) {
    for (const std::string& ended : restart.ended) {
        console.row(Mark::good, {"ended " + ended}, {});
    }
    std::size_t deletes = 0;
    for (const PendingMove& move : restart.moves) {
        if (move.to.empty()) {
            ++deletes;
        } else {
            console.row(Mark::good, {move.from, console.arrow() + " " + move.to}, {sourceWidth});
        }
    }
    if (deletes > 0) {
        console.row(Mark::good, {counted(deletes, "delete") + " of old files"}, {});
    }
    if (restart.moves.empty()) {
        console.row(Mark::none, {"nothing was waiting for a restart"}, {});
    }
    for (const std::string& failure : restart.failures) {
        console.row(Mark::fault, {failure}, {});
    }
}

} // namespace

std::string belowClient(const std::string& path, const ClientSystem& system) {
    const std::string client = toClientPath(system.spelled(system.folders().client())) + "\\";
    return path.rfind(client, 0) == 0 ? path.substr(client.size()) : path;
}

MachineRestart restartMachine(ClientSystem& system, Console& console) {
    MachineRestart restart;
    restart.ended = endHolders(system);
    Restarted done = system.restart();
    for (const PendingMove& move : done.waited) {
        restart.moves.push_back({belowClient(move.from, system), belowClient(move.to, system)});
    }
    restart.failures = std::move(done.failures);
    tell(restart, console);
    return restart;
}

Json membersOf(const PendingMove& move) {
    return {{"from", move.from}, {"to", move.to.empty() ? Json(nullptr) : Json(move.to)}};
}

Json membersOf(const MachineRestart& restart) {
    Json moves = Json::array();
    for (const PendingMove& move : restart.moves) {
        moves.push_back(membersOf(move));
    }
    return {{"ended", restart.ended}, {"moves", moves}, {"failures", restart.failures}};
}

} // namespace sandbox
