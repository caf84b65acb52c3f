#include "updatepkg/task/xtaskpkginstall.h"

#include "host/hostmodules.h"
#include "host/log.h"
#include "host/settings.h"
#include "platform/text.h"
#include "updatepkg/xupdatepkgtrace.h"
#include "utils/utils.h"

namespace {

/// Relative: the starter of programs resolves it against the application folder.
constexpr const char* setupPath = "update\\setup.exe";
constexpr const wchar_t* silentParameters = L"/s /nosafe";
constexpr std::uint32_t noAutoUpdate = 1; ///< value of UPDATE_TYPE

bool isAutoUpdateOff() {
    constexpr std::uint32_t none = 0;
    std::uint32_t updateType = 0;
    readSettingUInt32(settingkeys::updateType, &updateType, &none);
    return updateType == noAutoUpdate;
}

} // namespace

void XTaskPkgInstall::check(FinishCallback finish) {
    if (m_isAuto && hostmodules::isMuteMode() != 0) {
        XLOG(logProgress, "XTaskPkgInstall check isMugeMode return ");
        return; // without `finish`, so that nothing runs until the user wants it
    }
    XLOG(logProgress, "update plugin, pkg, task install, check ...");
    const std::shared_ptr<XUpdatePkgSender> sender = m_sender; // outlives the task
    if (!canInstall()) {
        XLOG(logProgress, "update plugin, pkg, task install, can't install");
        end(finish, false);
        if (sender) {
            sender->sendUpgradeInfo();
        }
        return;
    }
    XUpdatePkgTrace& trace = XUpdatePkgTrace::instance();
    const std::shared_ptr<UpgradeData> data = trace.getData();
    if (!data) {
        XLOG(logProgress, "update plugin, pkg, task install, fail data nil");
        end(finish, false);
        return;
    }
    _runSetup(setupPath);
    if (utils::isLogined()) {
        data->setStatus(upgradeStarted);
        data->setIsUIUpgradeFinished(!m_isAuto);
        trace.setData(data);
    } else {
        trace.clearData(); // without a user nobody is told later
    }
    XLOG(logProgress, "update plugin, pkg, task install, finished");
    const bool isAuto = m_isAuto;
    end(finish, true);
    if (sender && !isAuto) {
        sender->sendInstallFinish();
    }
}

bool XTaskPkgInstall::canInstall() const {
    if (!m_isAuto) {
        return true;
    }
    if (utils::isLogined() && isAutoUpdateOff()) {
        XLOG(logProgress, "update plugin, pkg, task install, not auto update");
        return false;
    }
    if (!utils::canRestartTray()) {
        XLOG(logProgress, "update plugin, pkg, task install, can't restart tray");
        return false;
    }
    return true;
}

void XTaskPkgInstall::_runSetup(const char* path) const {
    hostmodules::runProcess(platform::toWide(path).c_str(), m_isAuto ? silentParameters : nullptr);
}
