#include "utils/timegate.h"

#include <algorithm>
#include <string>

#include "host/settings.h"
#include "platform/clock.h"
#include "utils/utils.h"

namespace {

constexpr int leastTestWait = 10;

} // namespace

void TimeGate::load() {
    constexpr std::uint64_t none = 0;
    std::uint64_t value = 0;
    readSettingUInt64(key, &value, &none);
    if (value == 0) {
        restart();
        firstCheckPending = true;
        return;
    }
    lastCheckTick = static_cast<std::int64_t>(value);
}

bool TimeGate::passes() {
    const std::int64_t elapsed =
        utils::elapsedSince(static_cast<std::uint64_t>(lastCheckTick.load()));
    std::string channelId;
    int updateTime = 0;
    bool testParam = false;
    if (utils::readTestConfig(channelId, updateTime, testParam)) {
        return elapsed > std::max(updateTime, leastTestWait);
    }
    if (firstCheckPending) {
        if (elapsed <= firstWait) {
            return false;
        }
        firstCheckPending = false;
        return true;
    }
    return elapsed > wait;
}

void TimeGate::restart() {
    // The stored tick count outlives the boot in which it was taken: after a restart the gate
    // stays shut until the new count has passed it.
    const std::uint32_t tick = platform::tickCount();
    lastCheckTick = tick;
    writeSettingUInt64(key, tick);
}
