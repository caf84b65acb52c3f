#include "updatepkg/task/xtaskpkgcondition.h"

#include <utility>

#include "host/log.h"
#include "host/settings.h"
#include "utils/timegate.h"

namespace {

// Thresholds of the gate, in milliseconds of tick count.
constexpr std::int64_t firstCheckWait = 600;
constexpr std::int64_t checkWait = 1800;

constinit TimeGate gate(settingkeys::pkgLastCheckTime, firstCheckWait, checkWait);

} // namespace

void XTaskPkgCondition::loadLastCheckTime() {
    gate.load();
}

void XTaskPkgCondition::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, pkg, task condition, check ...");
    if (!_checkTimes()) {
        XLOG(logProgress, "update plugin, pkg, task condition, check times fail, so ignore.");
        end(finish, false);
        return;
    }
    // Before any work: a run that fails later counts as a check too.
    gate.restart();
    XTaskBase::check(std::move(finish));
}

bool XTaskPkgCondition::_checkTimes() {
    return gate.passes();
}
