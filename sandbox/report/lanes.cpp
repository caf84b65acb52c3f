#include "sandbox/report/lanes.h"

#include <algorithm>
#include <string_view>

namespace sandbox::report {
namespace {

struct Anchor {
    std::string_view begins;
    Lane lane;
};

// The first that fits counts.
constexpr Anchor anchors[] = {
    {"update plugin, pkg, check update", Lane::host},
    {"update plugin, kelvar, check update", Lane::host},
    {"update plugin, other, check update", Lane::host},
    {"update plugin, statistic, ", Lane::host},
    {"update plugin, file, check update", Lane::host},
    {"XUpdateMgr ", Lane::host},
    {"update plugin, pkg, check version", Lane::commands},
    {"update plugin, pkg, download pkg", Lane::commands},
    {"update plugin, pkg, install pkg", Lane::commands},
    {"update plugin, pkg, cancel download", Lane::commands},
    {"update plugin, queue, run end", Lane::worker},
    {"update plugin, kelvar, task condition", Lane::worker},
    {"update plugin, pkg, task condition", Lane::worker},
    {"update plugin, pkg, task check, check", Lane::worker},
    {"update plugin, other, task", Lane::worker},
    {"update plugin, kelvar, task fetch, check", Lane::worker},
    {"update plugin, pkg, task check, response", Lane::delivery},
    {"update plugin, file, task check, response", Lane::delivery},
    {"update plugin, kelvar http, response", Lane::delivery},
    {"update plugin, kelvar, fetch material meta", Lane::delivery},
    {"update plugin, kelvar, task fetch, ", Lane::delivery},
    {"update plugin, kelvar, task download", Lane::delivery},
    {"update plugin, kelvar, task move", Lane::delivery},
    {"update plugin, kelvar, task premove", Lane::delivery},
    {"update plugin, download task", Lane::delivery},
    {"update plugin, move task", Lane::delivery},
};

} // namespace

const char* titleOf(Lane lane) {
    constexpr const char* titles[] = {"Host thread",     "User's commands", "Workers",
                                      "Delivery thread", "Notifications",   "Faults"};
    return titles[static_cast<std::size_t>(lane)];
}

Lane LaneFinder::laneOf(const LogLine& line) {
    // Only the first question is asked by the worker; the others by who brought an answer.
    constexpr std::string_view request = "update plugin, kelvar http, request:";
    if (line.text.compare(0, request.size(), request) == 0) {
        const bool isFirst = line.text.find("/GetUpgradePacket ,") != std::string::npos;
        return threads[line.thread] = isFirst ? Lane::worker : Lane::delivery;
    }
    const auto found =
        std::find_if(std::begin(anchors), std::end(anchors), [&](const Anchor& anchor) {
            return line.text.compare(0, anchor.begins.size(), anchor.begins) == 0;
        });
    if (found != std::end(anchors)) {
        threads[line.thread] = found->lane;
    }
    // A thread that has said nothing of its own is that of a queue.
    return threads.try_emplace(line.thread, Lane::worker).first->second;
}

} // namespace sandbox::report
