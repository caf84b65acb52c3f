#pragma once

#include <string>
#include <vector>

namespace sandbox::report {

/// One bound of a material's condition on a version.
struct Clause {
    std::string op; ///< ">", ">=", "<", "<=", "=="
    std::string bound;

    bool holds(const std::string& version) const;
};

/// The bounds that a client keeps of an expression like `%appver%>="1.0"&&%appver%<"2.0"`: the
/// last readable clause of each side, none when all are empty. None: everything passes.
std::vector<Clause> clausesOf(const std::string& expression, const std::string& tag);

/// Below 0, 0 or above 0, as a client compares dotted versions: part by part as numbers; with
/// equal parts the longer one is the greater.
int compareVersions(const std::string& a, const std::string& b);

} // namespace sandbox::report
