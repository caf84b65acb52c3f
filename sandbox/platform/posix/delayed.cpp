#include "sandbox/platform/delayed.h"

#include "platform/posix/delayedmoves.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {

std::vector<PendingMove> pendingMoves(const std::filesystem::path& clientFolder) {
    std::vector<PendingMove> moves;
    for (const auto& request : platform::posix::readDelayedMoves(toClientPath(clientFolder))) {
        moves.push_back({request.from, request.to.value_or("")});
    }
    return moves;
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
