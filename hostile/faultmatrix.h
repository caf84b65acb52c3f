#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

/// Every request and every transfer against every fault of a server. The cells are those of the
/// tests Faults/FaultMatrix, which judge them; here they are run and shown.
namespace hostile {

struct FaultMatrix {
    /// What came of a cell, by the fault and by what it stood on.
    std::map<std::string, std::map<std::string, std::string>> cells{};
    std::vector<std::string> on{};
    std::vector<std::string> faults{}; ///< what the tests say of cells that failed, or lack
    bool isWhole = false;              ///< all ran, and none failed
};

/// Runs that program's tests, which are to have that many cells. Blocks for a minute or two, until
/// all of them have ended, also when it fails. Throws std::runtime_error when they cannot be run.
FaultMatrix runFaultMatrix(const std::filesystem::path& tests, std::size_t cells);

/// What is in the table.
std::size_t cellCount(const FaultMatrix& matrix);

void print(std::ostream& out, const FaultMatrix& matrix);

} // namespace hostile
