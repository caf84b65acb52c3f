#pragma once

#include <map>
#include <string>

#include "sandbox/report/logline.h"

namespace sandbox::report {

/// Who does a thing. The first four are threads of the client's process; the last two are what
/// the sandbox sees beside the log.
enum class Lane { host, commands, worker, delivery, notifications, faults };

inline constexpr Lane allLanes[] = {Lane::host,     Lane::commands,      Lane::worker,
                                    Lane::delivery, Lane::notifications, Lane::faults};

const char* titleOf(Lane lane);

/// Tells the role of the thread that wrote a line: by what only that role writes, else by what
/// the thread wrote before. Lines are to come in their order. One thread.
class LaneFinder {
public:
    Lane laneOf(const LogLine& line);

private:
    std::map<std::string, Lane> threads;
};

} // namespace sandbox::report
