#include "soak/demands.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "sandbox/faults/clientfaults.h"
#include "soak/programme.h"

namespace soak {
namespace {

constexpr std::size_t shareOfPackets = 2; ///< one in so many has to be done; faults take the rest

bool isDone(const Findings& found, const std::string& what) {
    return std::any_of(found.done.begin(), found.done.end(),
                       [&](const auto& done) { return done.first == what && done.second > 0; });
}

} // namespace

std::vector<std::string> unmetDemands(const Findings& found) {
    std::vector<std::string> unmet;
    if (found.packetsDone * shareOfPackets < found.packets) {
        unmet.push_back(std::to_string(found.packetsDone) + " packets done of " +
                        std::to_string(found.packets) + " on offer");
    }
    if (!found.isServedAtLast) {
        unmet.emplace_back("no packet done behind the last fault");
    }
    if (found.turns < programme().size()) {
        return unmet;
    }
    for (const Turn& turn : programme()) {
        for (const sandbox::Fault& fault : faultsOf(turn.faults)) {
            const auto& met = sandbox::isOfClient(fault) ? found.clientFaults : found.faults;
            if (!met.contains(fault.title())) {
                unmet.push_back("no effect of the fault " + fault.title());
            }
        }
        if (*turn.does != '\0' && !isDone(found, turn.does)) {
            unmet.push_back(std::string("none of ") + turn.does);
        }
    }
    return unmet;
}

std::vector<sandbox::Fault> faultsOf(const std::string& list) {
    return sandbox::readFaults(nlohmann::json::parse(list),
                               {"core", "base", "first", "second", "held"});
}

} // namespace soak
