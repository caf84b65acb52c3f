#include "updatefile/task/xtaskfilecheck.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "host/hostmodules.h"
#include "host/log.h"
#include "host/upgradeserver.h"
#include "utils/jsonfields.h"
#include "utils/utils.h"

namespace {

constexpr const char* checkPath = "/upgrade/v1/file/check";
constexpr const char* bundleId = "com.orvane.tulsar";
constexpr const char* osName = "windows";
constexpr int httpOk = 200;

std::string textOf(const char* text) {
    return text ? text : "";
}

} // namespace

void XTaskFileCheck::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, file, task check ...");
    ListPtr local;
    loadFileList(local);
    if (!local || local->size() == 0) {
        XLOG(logProgress, "update plugin, file, task check, local list null . ");
        end(finish, false);
        return;
    }
    _doHttp(*local, [this, local, finish = std::move(finish)](const ListPtr& answer) {
        // Nothing new counts as a failure too.
        if (!answer || answer->size() == 0) {
            XLOG(logProgress, "update plugin, file, task check, response list null . ");
            end(finish, false);
            return;
        }
        local->merge(answer);
        saveFileList(local); // before any download: the next request tells these versions
        XTaskBase::check(finish);
    });
}

void XTaskFileCheck::_doHttp(const XUpdateFileList& list, const ListCallback& callback) {
    const std::string url = upgradeserver::makeUrl(checkPath);
    uc::IUserCenter* center = hostmodules::getUserCenter();
    uc::IUserState* state = center ? center->tokenState() : nullptr;
    if (!state || !state->token()) {
        callback(nullptr);
        return;
    }
    const std::string body = jsonfields::dump({{"bundleId", bundleId},
                                               {"osName", osName},
                                               {"osVersion", utils::getOSVersion(true)},
                                               {"phone", textOf(state->phone())},
                                               {"info", _buildInfo(list)}});
    const std::string token = textOf(state->token());
    XLOG(logProgress, "update plugin, file, task check, request:", body);
    upgradeserver::post(url, token, body, [callback](int err, int code, const std::string& text) {
        if (err != 0 || code != httpOk) {
            XLOG(logFault, "update plugin, file, task check, response, error : ", err,
                 ", code = ", code);
            callback(nullptr);
            return;
        }
        XLOG(logProgress, "update plugin, file, task check, response:", text);
        const auto answer = std::make_shared<XUpdateFileList>();
        answer->fromResponse(text);
        callback(answer);
    });
}

nlohmann::json XTaskFileCheck::_buildInfo(const XUpdateFileList& list) {
    nlohmann::json info = nlohmann::json::array();
    for (std::size_t i = 0; i < list.size(); ++i) {
        info.push_back({{"fileType", list[i]->fileType}, {"fileVersion", list[i]->fileVersion}});
    }
    return info;
}
