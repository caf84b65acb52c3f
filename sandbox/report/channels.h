#pragma once

#include <cstddef>
#include <string>
#include <vector>

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

/// The decisions of the channels other than Kelvar in the lines from `first` up to and without
/// `end`, channel by channel in the order of the log. A step that a channel takes on every tick
/// stands once, where it came first.
std::vector<ChannelStep> channelSteps(const Log& log, std::size_t first, std::size_t end);

} // namespace sandbox::report
