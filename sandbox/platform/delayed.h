#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

/// What the system keeps for its next start. The client's process must not run.
namespace sandbox {

/// One request, in client paths; an empty `to` means delete.
struct PendingMove {
    std::string from;
    std::string to;
};

std::vector<PendingMove> pendingMoves(const std::filesystem::path& clientFolder);

/// Carries the requests out as a restart does. What could not be done, in words.
std::vector<std::string> carryOutMoves(const std::filesystem::path& clientFolder);

} // namespace sandbox
