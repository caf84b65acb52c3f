#pragma once

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/knowledge.h"

namespace sandbox::report {

/// A program that a material's execution text names.
struct ExecEntry {
    std::string program; ///< lower case, as it is started
    std::string parameters;
};

/// The entries of `(%process%="a.exe" %param%="--x")&&(...)`, as a client reads them.
std::vector<ExecEntry> execEntries(const std::string& text);

/// Adds the programs that the log does not have, each with the reason as far as it is told, behind
/// those of the log. Only the scenario tells of them.
void addUnstarted(KelvarRun& run, const Knowledge& known);

} // namespace sandbox::report
