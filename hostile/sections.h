#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "hostile/trial.h"

/// The parts of the hostile test, each with a table of what became of its materials.
namespace hostile {

/// A line for each group of a section, a column for each outcome.
struct Tally {
    std::map<std::string, std::array<std::size_t, outcomeNames.size()>> lines{};
    std::vector<std::string> details{}; ///< a line for each trial
    std::vector<std::string> faults{};

    void add(const std::string& group, const std::string& what, const Verdict& verdict);
};

/// Every `stride`-th of the cabinets of the table.
Tally tryCabinets(std::size_t stride = 1);

/// Cabinets and images that are broken at random: `count` of each, from the first seed on, many
/// in a packet.
Tally tryBrokenCabinets(std::size_t count);
Tally tryBrokenImages(std::size_t count);

/// Every bad name as "file_path", "md5" and "file_md5"; every `stride`-th of them.
Tally tryNames(std::size_t stride = 1);

} // namespace hostile
