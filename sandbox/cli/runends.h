#pragma once

#include <set>

#include <nlohmann/json.hpp>

namespace sandbox {

/// Tells by the log when a run of the Kelvar channel, a chain that got past its time gate,
/// begins and ends, and when a chain of the package channel ends. A chain begins and ends on
/// one thread, the queue's worker. One thread.
class RunEnds {
public:
    enum class What { nothing, begins, ends, packageEnds };
    What see(const nlohmann::json& event);

private:
    std::set<unsigned long> inRun;     ///< threads
    std::set<unsigned long> inPackage; ///< likewise, and those that bring answers
};

} // namespace sandbox
