#include "sandbox/platform/delayed.h"

#include <algorithm>

#include "platform/posix/delayedmoves.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {

/// The journal's reader takes one that cannot be read as empty, would wait for a pipe and passes
/// over damaged lines.
PendingList pendingList(const std::filesystem::path& clientFolder) {
    PendingList list;
    const auto journal = clientFolder / platform::posix::delayedMovesJournal;
    const auto text = readFile(journal);
    if (!text) {
        std::error_code error;
        if (std::filesystem::exists(journal, error) || error) {
            list.faults.emplace_back("the journal of delayed moves cannot be read");
        }
        return list;
    }
    for (const auto& request : platform::posix::readDelayedMoves(toClientPath(clientFolder))) {
        list.moves.push_back({request.from, request.to.value_or("")});
    }
    const auto ends = static_cast<std::size_t>(std::count(text->begin(), text->end(), '\n'));
    const std::size_t lines = ends + (text->empty() || text->ends_with('\n') ? 0 : 1);
    if (lines > list.moves.size()) {
        list.faults.push_back(std::to_string(lines - list.moves.size()) +
                              " line(s) of the journal of delayed moves are no request");
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
