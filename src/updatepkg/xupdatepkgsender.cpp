#include "updatepkg/xupdatepkgsender.h"

#include <cstring>
#include <string>

#include "host/hostmodules.h"
#include "host/log.h"
#include "platform/process.h"
#include "updatepkg/xupdatepkgtrace.h"

namespace {

/// Posts an event with a text that fits its record.
void post(NC::PackageCode code, const std::string& text = {}) {
    NC::PackageRecord record;
    record.code = code;
    std::memcpy(record.data, text.data(), text.size());
    if (NC::INotificationCenter* center = hostmodules::getNotificationCenter()) {
        center->post(NC::packageType, &record, sizeof(record));
    }
}

} // namespace

void XUpdatePkgSender::sendUpgradeInfo() {
    const std::shared_ptr<UpgradeData> data = XUpdatePkgTrace::instance().getData();
    const std::string text = data ? data->toStored() : std::string();
    if (text.size() >= sizeof(NC::PackageRecord::data)) {
        // A cut offer would be no JSON; nothing is written past the record's end either.
        XLOG(logFault, "update plugin, pkg, sender, upgrade info too long, length:", text.size());
        platform::abortProcess();
    }
    post(NC::eventUpgradeInfo, text);
}

void XUpdatePkgSender::sendDownloadStart() {
    post(NC::eventDownloadStart);
}

void XUpdatePkgSender::sendDownloadProgress(int percent) {
    post(NC::eventDownloadProgress, std::to_string(percent));
}

void XUpdatePkgSender::sendDownloadFinish(bool /*ok*/) {
    post(NC::eventDownloadFinish);
}

void XUpdatePkgSender::sendInstallFinish() {
    post(NC::eventInstallFinish);
}
