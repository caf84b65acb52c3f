#pragma once

#include <filesystem>
#include <vector>

#include "sandbox/faults/fault.h"

/// The faults of a run that really took effect, one JSON object a line in faults.jsonl. Any
/// thread, any process of the run. A line that cannot be written is lost.
namespace sandbox {

/// Appends the fault with "at" (milliseconds since the begin of 1970 UTC), the step of the
/// scenario, from 1, and the request of that step that met it.
void logFault(const std::filesystem::path& file, std::size_t phase, const Fault& fault,
              std::size_t attempt);

/// Whether one line of the step is of that fault, with all its members.
bool hasTakenEffect(const std::vector<nlohmann::json>& lines, std::size_t phase,
                    const Fault& fault);

/// The lines of the file; none when it is not there. What is no JSON is left out.
std::vector<nlohmann::json> readFaultLog(const std::filesystem::path& file);

} // namespace sandbox
