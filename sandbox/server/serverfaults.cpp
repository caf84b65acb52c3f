#include "sandbox/server/serverfaults.h"

#include <utility>

namespace sandbox {
namespace {

bool isOfServer(const Fault& fault) {
    return (fault.kind().places & placeServed) != 0 && fault.name != dropFault;
}

} // namespace

void ServerFaults::beginRun(RunFaults of) {
    ++runs;
    run.tookEffect = std::move(of.tookEffect);
    run.faults.clear();
    for (Fault& fault : of.faults) {
        if (isOfServer(fault)) {
            run.faults.push_back(std::move(fault));
        }
    }
    seen.assign(run.faults.size(), false);
    requests.clear();
}

std::optional<ServerFaults::Met> ServerFaults::next(const std::string& on) {
    const std::size_t attempt = ++requests[on];
    for (std::size_t i = 0; i < run.faults.size(); ++i) {
        const Fault& fault = run.faults[i];
        if (fault.on == on && (fault.attempt == 0 || fault.attempt == attempt)) {
            return Met{fault, runs, i, attempt};
        }
    }
    return std::nullopt;
}

void ServerFaults::tookEffect(const Met& met) {
    if (met.run != runs) {
        return;
    }
    seen[met.number] = true;
    if (run.tookEffect) {
        run.tookEffect(met.fault, met.attempt);
    }
}

std::vector<std::string> ServerFaults::missed() const {
    std::vector<std::string> titles;
    for (std::size_t i = 0; i < run.faults.size(); ++i) {
        if (!seen[i]) {
            titles.push_back(run.faults[i].title());
        }
    }
    return titles;
}

} // namespace sandbox
