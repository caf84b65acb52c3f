#include "crash/operations.h"

#include <unistd.h>

#include "crash/writtenfiles.h"

namespace crash {

namespace {

struct Counting {
    Plan plan;
    std::vector<Step> steps;
    std::size_t lookups = 0;
};

Counting& counting() {
    static auto& one = *new Counting; // the plug-in's threads outlive static objects
    return one;
}

[[noreturn]] void die() {
    const Plan& plan = counting().plan;
    if (plan.disturbance == Disturbance::losesOpen) {
        cutOpenFiles();
    } else if (plan.disturbance == Disturbance::losesAll) {
        zeroWrittenFiles();
    }
    if (plan.atDeath) {
        plan.atDeath();
    }
    ::_exit(diedAsPlanned);
}

bool takesRoom(Operation operation) {
    switch (operation) {
    case Operation::storeSetting:
    case Operation::storeVersion:
    case Operation::makeFolder:
    case Operation::openToWrite:
    case Operation::write:
    case Operation::moveAtRestart:
        return true;
    default:
        return false;
    }
}

} // namespace

void begin(Plan plan) {
    counting() = {};
    counting().plan = std::move(plan);
}

const std::vector<Step>& countedSteps() {
    return counting().steps;
}

std::size_t storeLookups() {
    return counting().lookups;
}

bool lookUpStore() {
    const Plan& plan = counting().plan;
    const std::size_t number = ++counting().lookups;
    return plan.disturbance != Disturbance::storeIsGone || number < plan.at;
}

Counted::Counted(Operation operation, std::string what) {
    Counting& now = counting();
    now.steps.push_back({operation, std::move(what)});
    const std::size_t number = now.steps.size();
    isMeant = number == now.plan.at;
    full = now.plan.disturbance == Disturbance::fullDisk && number >= now.plan.at &&
           takesRoom(operation);
    failing = full || (isMeant && now.plan.disturbance == Disturbance::fails);
    if (isMeant && now.plan.disturbance == Disturbance::diesBefore) {
        die();
    }
    if (isMeant && now.plan.visitor) {
        now.plan.visitor();
    }
}

Counted::~Counted() {
    const Disturbance disturbance = counting().plan.disturbance;
    if (isMeant &&
        (disturbance == Disturbance::diesAfter || disturbance == Disturbance::losesOpen ||
         disturbance == Disturbance::losesAll)) {
        die();
    }
}

bool Counted::isCut() const {
    return isMeant && counting().plan.disturbance == Disturbance::losesOpen;
}

} // namespace crash
