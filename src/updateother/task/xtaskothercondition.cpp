#include "updateother/task/xtaskothercondition.h"

#include <utility>

#include "host/log.h"
#include "platform/clock.h"
#include "utils/utils.h"

namespace {

// Thresholds of the gate, in milliseconds of tick count.
constexpr std::int64_t firstCheckWait = 600;
constexpr std::int64_t checkWait = 1800;

} // namespace

void XTaskOtherCondition::check(FinishCallback finish) {
    // Written on every entry, before the test: the text does not mean what it says.
    XLOG(logProgress, "update plugin, other, task condition, can't check, so ignore");
    if (!_checkTimes()) {
        XLOG(logProgress, "update plugin, other, task condition, check times fail, so ignore.");
        end(finish, false);
        return;
    }
    otherLastTick = platform::tickCount();
    XTaskBase::check(std::move(finish));
}

bool XTaskOtherCondition::_checkTimes() {
    const std::int64_t elapsed = utils::elapsedSince(otherLastTick);
    if (!firstCheck) {
        return elapsed > checkWait;
    }
    firstCheck = elapsed <= firstCheckWait;
    return !firstCheck;
}
