#include "updatepkg/task/xtaskpkgcheck.h"

#include <nlohmann/json.hpp>

#include "host/hostmodules.h"
#include "host/log.h"
#include "host/settings.h"
#include "host/upgradeserver.h"
#include "updatepkg/xupdatepkgtrace.h"
#include "utils/filelist.h"
#include "utils/jsonfields.h"
#include "utils/utils.h"

namespace {

constexpr int httpOk = 200;
constexpr const char* checkPath = "/upgrade/v2/upgrade/check";
constexpr const char* defaultLanguage = "zh_CN";
constexpr const char* versionFile = "orvsecurityver.dll";

/// What the server is told of the user; empty texts without one.
struct Account {
    std::string phone;
    std::string token;
};

std::string textOrEmpty(const char* text) {
    return text ? text : "";
}

Account currentAccount() {
    uc::IUserCenter* center = hostmodules::getUserCenter();
    uc::IUserState* state = center ? center->tokenState() : nullptr;
    if (!state || !state->isValid()) {
        return {};
    }
    return {textOrEmpty(state->phone()), textOrEmpty(state->token())};
}

std::string requestBody(const std::string& phone) {
    std::string language;
    readSettingString(settingkeys::language, language, defaultLanguage);
    return jsonfields::dump({{"platform", "tulsar.pc"},
                             {"bundleId", "com.orvane.tulsar"},
                             {"version", utils::getSecurityVersion()},
                             {"channelId", utils::getChannelType()},
                             {"phone", phone},
                             {"lang", language}});
}

} // namespace

void XTaskPkgCheck::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, pkg, task check, check ...isAutoCheck:", m_isAutoCheck);
    if (!m_isAutoCheck && _confirmInstalled()) {
        end(finish, false);
        return;
    }
    _requestUpgrade([self = shared_from_this(), finish = std::move(finish)](bool succ) {
        XLOG(logProgress, "update plugin, pkg, task check, succ:", succ);
        if (!self->hasNext()) {
            if (self->m_sender) {
                self->m_sender->sendUpgradeInfo();
            }
            end(finish, succ);
        } else if (!succ) {
            end(finish, false);
        } else {
            self->XTaskBase::check(finish);
        }
    });
}

/// Whether the setup that was started has brought the client to the offered version.
bool XTaskPkgCheck::_confirmInstalled() {
    XUpdatePkgTrace& trace = XUpdatePkgTrace::instance();
    const std::shared_ptr<UpgradeData> data = trace.getData();
    if (!data) {
        return false;
    }
    const std::int32_t status = data->getStatus();
    const std::string version = data->getVersion();
    const std::string running = utils::getSecurityVersion();
    XLOG(logProgress, "update plugin, pkg, task check, status:", status, ", ver:", version,
         ", curr ver:", running);
    if (status != upgradeStarted || version != running) {
        return false;
    }
    data->setStatus(upgradeInstalled);
    trace.setData(data);
    if (utils::isLogined() && !data->getIsUIUpgradeFinished()) {
        XLOG(logProgress, "update plugin, pkg, task check, installed notify.");
        if (m_sender) {
            m_sender->sendUpgradeInfo();
        }
    } else {
        XLOG(logProgress, "update plugin, pkg, task check, not logined or ui upgrade.");
        trace.clearData();
    }
    return true;
}

void XTaskPkgCheck::_requestUpgrade(const FinishCallback& finish) {
    _checkUpdate([finish](const std::shared_ptr<UpgradeData>& data) {
        XUpdatePkgTrace& trace = XUpdatePkgTrace::instance();
        // Whether the version is a newer one is the server's word alone.
        if (!data || !data->getNeedUpgrade() || trace.isIgnoredVersion(data->getVersion())) {
            trace.clearData();
            finish(false);
            return;
        }
        trace.setData(data);
        _refreshVersionFile();
        finish(true);
    });
}

void XTaskPkgCheck::_checkUpdate(const Receiver& callback) {
    const Account account = currentAccount();
    const std::string url = upgradeserver::makeUrl(checkPath);
    const std::string body = requestBody(account.phone);
    XLOG(logProgress, "update plugin, pkg, task check, request:", body);
    const auto step = [callback](int err, int code, const std::string& answer) {
        if (err != 0 || code != httpOk) {
            XLOG(logFault, "update plugin, pkg, task check, response, error : ", err,
                 ", code = ", code);
            callback(nullptr);
            return;
        }
        XLOG(logProgress, "update plugin, pkg, task check, response:", answer);
        const auto data = std::make_shared<UpgradeData>();
        data->fromResponse(answer);
        callback(data);
    };
    upgradeserver::post(url, account.token, body, step);
}

void XTaskPkgCheck::_refreshVersionFile() {
    const std::string folder = utils::getAppDir();
    if (folder.empty()) {
        return;
    }
    const std::string path = folder + "\\" + versionFile;
    XNFileItem item;
    item.name = versionFile;
    item.version = utils::getFileVersion(path.c_str(), &item.isPE);
    item.md5 = utils::getFileMd5(path.c_str());
    item.size = static_cast<std::uint64_t>(utils::getFileSize(path.c_str()));
    XNFileListHelper().checkDiffAndUpdate({item});
}
