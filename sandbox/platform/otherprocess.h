#pragma once

#include <cstdint>
#include <filesystem>

/// Processes that another run of the sandbox has started, by number. Any thread.
namespace sandbox {

/// The file that the process runs; empty when there is no such process.
std::filesystem::path processFile(long long id);

/// Asks the process to end and waits until it has, five seconds at most. False when it
/// still runs then.
bool endProcessOf(long long id);

/// Whether the process has ended and whoever started it has taken that in, so that the
/// system keeps nothing of it any more.
bool isForgotten(long long id);

/// The largest resident memory, in bytes, that the process has had so far; 0 when it has
/// ended or the system does not tell.
std::uint64_t peakMemoryOf(long long id);

} // namespace sandbox
