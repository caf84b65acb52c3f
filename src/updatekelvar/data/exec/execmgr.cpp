#include "updatekelvar/data/exec/execmgr.h"

#include <algorithm>
#include <cstring>

#include "host/hostmodules.h"
#include "host/log.h"
#include "platform/text.h"
#include "utils/utils.h"

namespace {

constexpr const char* protectProgram = "orvprotect.exe";

} // namespace

int XExecMgr::addExec(const XExecMap& map) {
    if (map.empty()) {
        return -1;
    }
    for (const auto& [process, params] : map) {
        const std::string name = utils::toLower(process);
        XExecMap& target =
            std::strcmp(name.c_str(), protectProgram) == 0 ? protectExecs : normalExecs;
        for (const std::string& param : params) {
            std::vector<std::string>& list = target[name];
            if (std::find(list.begin(), list.end(), param) == list.end()) {
                list.push_back(param);
            }
        }
    }
    return 0;
}

int XExecMgr::execAll() {
    _exec(normalExecs);
    _exec(protectExecs);
    return 0;
}

int XExecMgr::_exec(const XExecMap& map) {
    for (const auto& [name, params] : map) {
        const std::wstring wideName = platform::toWide(name);
        for (const std::string& param : params) {
            const std::wstring wideParam = platform::toWide(param);
            XLOG(logProgress, "update plugin, kelvar, exec:", name, ", params:", param);
            hostmodules::runProcess(wideName.c_str(), wideParam.c_str());
        }
    }
    return 0;
}
