#include "updatestatistic/xupdatestatistic.h"

#include <string>

#include "host/hostmodules.h"
#include "host/log.h"
#include "platform/clock.h"
#include "platform/process.h"
#include "utils/utils.h"

namespace {

constexpr std::int64_t reportWait = 14400; ///< milliseconds of tick count

constexpr const char* runEvent = "run";
constexpr const char* typeLoggedIn = "1";
constexpr const char* typeOther = "2";

} // namespace

int XUpdateStatistic::init() {
    lastTick = platform::tickCount();
    return 0;
}

int XUpdateStatistic::checkUpdate() {
    XLOG(logProgress, "update plugin, statistic, check update ... ");
    if (utils::elapsedSince(lastTick) < reportWait) {
        XLOG(logProgress, "update plugin, statistic, time ignore ... ");
        return 0;
    }
    lastTick = platform::tickCount();
    _sendEvent();
    return 0;
}

void XUpdateStatistic::_sendEvent() {
    const std::string name = platform::executableName();
    const std::string clientVersion = utils::getSecurityVersion();
    bool isFileVersion = false;
    const std::string version = utils::getFileVersion(name.c_str(), &isFileVersion);
    uc::IUserCenter* center = hostmodules::getUserCenter();
    uc::IUserState* token = center ? center->tokenState() : nullptr;
    const char* type = token && token->isValid() ? typeLoggedIn : typeOther;
    hostmodules::event(name.c_str(), runEvent, clientVersion.c_str(), version.c_str(), type,
                       nullptr, nullptr);
}
