#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The system's list of moves to be carried out at its next start: a journal in the
/// folder of the host's executable, one line a request. Client paths and paths of this
/// system are both understood. Any thread, any number of processes; calls block while
/// another one writes.
namespace platform::posix {

inline constexpr const char* delayedMovesJournal = "delayed-moves.journal";

struct DelayedMove {
    std::string from;              ///< absolute client path
    std::optional<std::string> to; ///< absolute client path; none means delete
    bool replace = false;          ///< an existing target is overwritten

    bool operator==(const DelayedMove&) const = default;
};

/// Adds a request; it is on the disk when the call returns true. False, with a number in
/// lastError and the journal as before, when it cannot be written.
bool appendDelayedMove(const std::string& hostFolder, const DelayedMove& request);

/// The requests in their order. A last line that was cut short and lines that are no
/// request are left out.
std::vector<DelayedMove> readDelayedMoves(const std::string& hostFolder);

struct ApplyResult {
    struct Failure {
        DelayedMove request;
        std::uint32_t error = 0;
    };

    std::size_t applied = 0; ///< requests carried out or with nothing to do
    std::vector<Failure> failures;
};

/// Carries the requests out in their order and drops the journal. A replace overwrites; a
/// move without source and a delete of an absent file do nothing. A request that fails is
/// told in the result and is gone as well. Broken off by a crash, it may be called again.
ApplyResult applyDelayedMoves(const std::string& hostFolder);

} // namespace platform::posix
