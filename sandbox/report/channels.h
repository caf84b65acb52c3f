#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "sandbox/report/knowledge.h"
#include "sandbox/report/logline.h"

namespace sandbox::report {

/// What one of the other channels decided, once for a row of lines that say the same.
struct ChannelStep {
    std::string channel; ///< package, file, other, statistic, all
    std::string words;
    std::string value; ///< what the line tells beside, shortened; of the last one
    std::size_t times = 0;
    std::size_t line = 0; ///< of the first one
};

/// What became of the programs that other channels start, by the line that tells of each.
using Starts = std::map<std::size_t, std::string>;

/// Where the observations have as many starts as the log has lines of them; else empty.
Starts startsOf(const Log& log, const Knowledge& known);

/// The decisions of the channels other than Kelvar in the lines from `first` up to and without
/// `end`, channel by channel in the order of the log. A step that a channel takes on every tick
/// stands once, where it came first.
std::vector<ChannelStep> channelSteps(const Log& log, const Starts& starts, std::size_t first,
                                      std::size_t end);

} // namespace sandbox::report
