#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "soak/growth.h"
#include "soak/tally.h"

namespace soak {

/// What was sampled all along.
struct Courses {
    std::vector<Point> heap;   ///< bytes that are allocated, by ticks
    std::vector<Point> memory; ///< KB, by seconds as the others
    std::vector<Point> threads;
    std::vector<Point> handles;
};

/// What was sampled and counted.
struct Findings {
    Courses courses;
    bool isWindows = false;
    bool isBrokenOff = false; ///< ahead of its time
    bool isHostGone = false;  ///< it has ended by itself
    double seconds = 0;
    double cpuSeconds = 0; ///< of the host
    std::vector<std::pair<std::string, std::size_t>> done;
    std::map<std::string, std::size_t> faults; ///< of the servers, by how often they took effect
    std::map<std::string, std::size_t> clientFaults; ///< of its modules, which are counted once
    std::map<std::string, std::size_t> failures;
    std::size_t turns = 0; ///< that went on for their whole time
    std::size_t uiGood = 0;
    std::size_t uiOther = 0;
    std::size_t packets = 0; ///< on offer
    std::size_t packetsDone = 0;
    std::size_t packages = 0;
    bool isServedAtLast = false; ///< a packet that came behind the last fault is done
    std::size_t delayedMoves = 0;
    std::size_t leftInUpdate = 0; ///< files
    Kept kept;
    int hostExit = -1;
};

} // namespace soak
