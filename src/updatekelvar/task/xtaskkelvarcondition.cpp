#include "updatekelvar/task/xtaskkelvarcondition.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/log.h"
#include "host/settings.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "utils/utils.h"

namespace {

// Thresholds of the gate, in milliseconds of tick count.
constexpr std::int64_t firstCheckWait = 300;
constexpr std::int64_t checkWait = 1800;
constexpr int leastTestWait = 10;

// Shared by all chains of the channel in the process, of which two can run at a time.
// Each value stands for itself: the worst of a race is a run more or less.
std::atomic<std::int64_t> lastCheckTick = 0; ///< a tick count, zero-extended
std::atomic<bool> firstCheckPending = false; ///< since a start with no stored time

/// The tick count of the last check outlives the boot in which it was taken: after a
/// restart the gate stays shut until the new count has passed it.
void storeCheckTime(std::uint32_t tick) {
    writeSettingUInt64(settingkeys::kelvarLastCheckTime, tick);
}

} // namespace

void XTaskKelvarCondition::loadLastCheckTime() {
    constexpr std::uint64_t none = 0;
    std::uint64_t value = 0;
    readSettingUInt64(settingkeys::kelvarLastCheckTime, &value, &none);
    if (value == 0) {
        const std::uint32_t tick = platform::tickCount();
        storeCheckTime(tick);
        firstCheckPending = true;
        value = tick;
    }
    lastCheckTick = static_cast<std::int64_t>(value);
}

void XTaskKelvarCondition::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, kelvar, task condition, check ... ");
    if (!_checkTimes()) {
        XLOG(logProgress, "update plugin, kelvar, task condition, check times fail, so ignore.");
        finish(false);
        return;
    }
    // Written before any work: a run that fails later counts as a check too.
    const std::uint32_t tick = platform::tickCount();
    lastCheckTick = tick;
    storeCheckTime(tick);
    _clearTempFiles();
    XTaskBase::check(std::move(finish));
}

bool XTaskKelvarCondition::_checkTimes() {
    // Without sign: the stored number may be anything.
    const auto elapsed = static_cast<std::int64_t>(
        std::uint64_t{platform::tickCount()} - static_cast<std::uint64_t>(lastCheckTick.load()));
    std::string channelId;
    int updateTime = 0;
    bool testParam = false;
    if (utils::readTestConfig(channelId, updateTime, testParam)) {
        return elapsed > std::max(updateTime, leastTestWait);
    }
    if (firstCheckPending) {
        if (elapsed <= firstCheckWait) {
            return false;
        }
        firstCheckPending = false;
        return true;
    }
    return elapsed > checkWait;
}

std::string XTaskKelvarCondition::_getTempDirPath() {
    return platform::appendPath(platform::appendPath(utils::getAppDir(), "update"), "temp");
}

void XTaskKelvarCondition::_clearTempFiles() {
    std::vector<std::string> names;
    utils::loadTempFileList(names);
    if (names.empty()) {
        return;
    }
    utils::clearTempFileList(); // used up now, whatever the sweep achieves
    const std::string dir = _getTempDirPath();
    if (utils::getAppDir().empty() || !platform::fileExists(dir)) {
        return;
    }
    const auto entries = platform::listFolder(dir);
    if (!entries) {
        return;
    }
    for (const platform::FolderEntry& entry : *entries) {
        if (!entry.isFolder && std::find(names.begin(), names.end(), entry.name) != names.end()) {
            platform::removeFile(dir + "\\" + entry.name);
        }
    }
}
