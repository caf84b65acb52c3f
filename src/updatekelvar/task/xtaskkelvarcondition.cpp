#include "updatekelvar/task/xtaskkelvarcondition.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "host/log.h"
#include "host/settings.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "utils/timegate.h"
#include "utils/utils.h"

namespace {

// Thresholds of the gate, in milliseconds of tick count.
constexpr std::int64_t firstCheckWait = 300;
constexpr std::int64_t checkWait = 1800;

constinit TimeGate gate(settingkeys::kelvarLastCheckTime, firstCheckWait, checkWait);

} // namespace

void XTaskKelvarCondition::loadLastCheckTime() {
    gate.load();
}

void XTaskKelvarCondition::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, kelvar, task condition, check ... ");
    if (!_checkTimes()) {
        XLOG(logProgress, "update plugin, kelvar, task condition, check times fail, so ignore.");
        finish(false);
        return;
    }
    // Written before any work: a run that fails later counts as a check too.
    gate.restart();
    _clearTempFiles();
    XTaskBase::check(std::move(finish));
}

bool XTaskKelvarCondition::_checkTimes() {
    return gate.passes();
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
    const std::unordered_set<std::string> listed(names.begin(), names.end());
    for (const platform::FolderEntry& entry : *entries) {
        if (!entry.isFolder && listed.count(entry.name) != 0) {
            platform::removeFile(dir + "\\" + entry.name);
        }
    }
}
