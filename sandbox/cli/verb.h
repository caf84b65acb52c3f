#pragma once

#include <functional>
#include <string>
#include <vector>

#include "sandbox/cli/exitstatus.h"
#include "sandbox/cli/output.h"

namespace CLI {
class App;
}

namespace sandbox {

/// A verb of xsandbox, and what carries it out. The function owns the values of the verb's
/// options, answers the exit status, and throws std::exception when the sandbox itself fails.
/// --json and --color are added to every verb by who lists it.
struct Verb {
    CLI::App* command;
    std::function<int(Output&)> carryOut;
};

/// What the help of a verb ends with.
struct HelpEnd {
    std::vector<std::string> examples; ///< command lines behind "xsandbox "
    std::string asExpected;            ///< meaning of exit status 0
    std::string different;             ///< and of 1; empty when it does not occur
    std::string words{};               ///< lines of the verb's own, put first
};

void endHelp(CLI::App* command, const HelpEnd& end);

} // namespace sandbox
