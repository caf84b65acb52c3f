#pragma once

#include <string>
#include <vector>

#include "sandbox/common/folders.h"
#include "sandbox/report/channels.h"
#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/knowledge.h"
#include "sandbox/report/logline.h"

namespace sandbox::report {

/// A log, explained: what was decided in each run of the Kelvar channel, and on what.
struct Explanation {
    Log log;
    Knowledge known;
    std::vector<KelvarRun> runs;
    std::size_t shutGates = 0; ///< drives of the channel that found its time gate shut

    Starts starts; ///< of programs of other channels, by the line that tells them
};

/// Of a log on its own.
Explanation explainText(const std::string& log);

/// Of a run's folder, with what else it tells. Throws std::runtime_error when it has no log.
Explanation explainFolder(const Folders& folders);

} // namespace sandbox::report
