#include "sandbox/cli/restart.h"

#include "sandbox/cli/runstate.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

/// Client paths without the folder that they all begin with.
std::string shortened(const std::string& path, const ClientSystem& system) {
    const std::string client = toClientPath(system.spelled(system.folders().client())) + "\\";
    return path.rfind(client, 0) == 0 ? path.substr(client.size()) : path;
}

} // namespace

bool restartMachine(ClientSystem& system, Console& console) {
    for (const std::string& ended : endHolders(system)) {
        console.row(Mark::good, {"ended " + ended}, {});
    }
    const Restarted restarted = system.restart();
    std::size_t deletes = 0;
    for (const PendingMove& move : restarted.waited) {
        if (move.to.empty()) {
            ++deletes;
            continue;
        }
        console.row(
            Mark::good,
            {shortened(move.from, system), console.arrow() + " " + shortened(move.to, system)},
            {40});
    }
    if (deletes > 0) {
        console.row(Mark::good, {counted(deletes, "delete") + " of old files"}, {});
    }
    if (restarted.waited.empty()) {
        console.row(Mark::none, {"nothing was waiting for a restart"}, {});
    }
    for (const std::string& failure : restarted.failures) {
        console.row(Mark::fault, {failure}, {});
    }
    return restarted.failures.empty();
}

} // namespace sandbox
