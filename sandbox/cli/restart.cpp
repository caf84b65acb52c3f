#include "sandbox/cli/restart.h"

#include "sandbox/cli/runstate.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/platform/delayed.h"

namespace sandbox {
namespace {

/// Client paths without the folder that they all begin with.
std::string shortened(const std::string& path, const Folders& folders) {
    const std::string client = toClientPath(folders.client()) + "\\";
    return path.rfind(client, 0) == 0 ? path.substr(client.size()) : path;
}

} // namespace

bool restartMachine(const Folders& folders, Console& console) {
    for (const std::string& ended : endHolders(folders)) {
        console.row(Mark::good, {"ended " + ended}, {});
    }
    const auto moves = pendingMoves(folders.client());
    const auto failures = carryOutMoves(folders.client());
    std::size_t deletes = 0;
    for (const PendingMove& move : moves) {
        if (move.to.empty()) {
            ++deletes;
            continue;
        }
        console.row(
            Mark::good,
            {shortened(move.from, folders), console.arrow() + " " + shortened(move.to, folders)},
            {40});
    }
    if (deletes > 0) {
        console.row(Mark::good, {counted(deletes, "delete") + " of old files"}, {});
    }
    if (moves.empty()) {
        console.row(Mark::none, {"nothing was waiting for a restart"}, {});
    }
    for (const std::string& failure : failures) {
        console.row(Mark::fault, {failure}, {});
    }
    return failures.empty();
}

} // namespace sandbox
