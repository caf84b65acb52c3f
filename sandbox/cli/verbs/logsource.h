#pragma once

#include <string>

#include "sandbox/cli/verb.h"
#include "sandbox/cli/verbs/runfolder.h"
#include "sandbox/report/explanation.h"

/// The options --folder and --log, which verbs about a log share.
namespace sandbox {

struct LogSource {
    std::string folder = usualFolder;
    std::string file; ///< of a log on its own; then no folder is looked at
    std::string title() const { return file.empty() ? folder : file; }
};

/// `source` outlives the command.
void addLogSource(CLI::App* command, LogSource& source);

/// Throws std::runtime_error when there is no such log.
report::Explanation explain(const LogSource& source);

} // namespace sandbox
