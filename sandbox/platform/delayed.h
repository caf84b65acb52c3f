#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What the system keeps for its next start.
namespace sandbox {

/// One request, in client paths; an empty `to` means delete.
struct PendingMove {
    std::string from;
    std::string to;
};

struct PendingList {
    std::vector<PendingMove> moves;
    std::vector<std::string> faults; ///< what in the list is no request, or why it is not read
};

/// The requests for files below the client's folder. On Windows they are in the system's
/// registry among those of all programs; on posix in a journal of the folder, whose
/// process must not run. A list that is not there is empty.
PendingList pendingList(const std::filesystem::path& clientFolder);

inline std::vector<PendingMove> pendingMoves(const std::filesystem::path& clientFolder) {
    return pendingList(clientFolder).moves;
}

/// Carries the journal out as a restart does. What could not be done, in words. On posix
/// only: Windows carries its list out by itself.
std::vector<std::string> carryOutMoves(const std::filesystem::path& clientFolder);

} // namespace sandbox
