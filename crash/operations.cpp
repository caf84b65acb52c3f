#include "crash/operations.h"

#include <unistd.h>

#include "crash/writtenfiles.h"

namespace crash {

namespace {

struct Session {
    Plan plan;
    std::vector<Step> steps;
    std::size_t lookups = 0;
};

Session& session() {
    static auto& one = *new Session; // the plug-in's threads outlive static objects
    return one;
}

[[noreturn]] void die() {
    const Plan& plan = session().plan;
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
    session() = {};
    session().plan = std::move(plan);
}

const std::vector<Step>& steps() {
    return session().steps;
}

std::size_t storeLookups() {
    return session().lookups;
}

bool lookUpStore() {
    const Plan& plan = session().plan;
    const std::size_t number = ++session().lookups;
    return plan.disturbance != Disturbance::storeIsGone || number < plan.at;
}

Counted::Counted(Operation operation, std::string what) {
    Session& now = session();
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
    const Disturbance disturbance = session().plan.disturbance;
    if (isMeant &&
        (disturbance == Disturbance::diesAfter || disturbance == Disturbance::losesOpen ||
         disturbance == Disturbance::losesAll)) {
        die();
    }
}

bool Counted::isCut() const {
    return isMeant && session().plan.disturbance == Disturbance::losesOpen;
}

} // namespace crash
