#include "sandbox/platform/delayed.h"

#include "platform/posix/delayedmoves.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {

PendingList pendingList(const std::filesystem::path& clientFolder) {
    PendingList list;
    for (const auto& request : platform::posix::readDelayedMoves(toClientPath(clientFolder))) {
        list.moves.push_back({request.from, request.to.value_or("")});
    }
    return list;
}

std::vector<std::string> carryOutMoves(const std::filesystem::path& clientFolder) {
    std::vector<std::string> failures;
    const auto result = platform::posix::applyDelayedMoves(toClientPath(clientFolder));
    for (const auto& failure : result.failures) {
        failures.push_back(failure.request.from + " -> " + failure.request.to.value_or("(delete)") +
                           ": error " + std::to_string(failure.error));
    }
    return failures;
}

} // namespace sandbox
