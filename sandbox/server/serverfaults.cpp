#include "sandbox/server/serverfaults.h"

#include <utility>

namespace sandbox {
namespace {

constexpr const char* ofClient = "drop"; // the one fault of a request that the client's side has

bool isOfServer(const Fault& fault) {
    return (fault.kind().places & placeServed) != 0 && fault.name != ofClient;
}

} // namespace

void ServerFaults::beginRun(RunFaults of) {
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
    for (const Fault& fault : run.faults) {
        if (fault.on == on && (fault.attempt == 0 || fault.attempt == attempt)) {
            return Met{fault, attempt};
        }
    }
    return std::nullopt;
}

void ServerFaults::tookEffect(const Met& met) {
    for (std::size_t i = 0; i < run.faults.size(); ++i) {
        if (run.faults[i].title() == met.fault.title()) {
            seen[i] = true;
        }
    }
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
