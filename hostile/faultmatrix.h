#pragma once

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
    std::vector<std::string> faults{}; ///< what the tests say of cells that failed
    bool isWhole = false;              ///< all ran, and none failed
};

/// Blocks for a minute or two. Throws std::runtime_error when the tests cannot be run.
FaultMatrix runFaultMatrix();

void print(std::ostream& out, const FaultMatrix& matrix);

} // namespace hostile
