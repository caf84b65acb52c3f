#include "updatepkg/xupdatepkgtrace.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/hostmodules.h"
#include "host/settings.h"
#include "updatepkg/xupdatepkg.h"
#include "utils/jsonfields.h"

XUpdatePkgTrace& XUpdatePkgTrace::instance() {
    static XUpdatePkgTrace& trace = *new XUpdatePkgTrace;
    return trace;
}

XUpdatePkgTrace::XUpdatePkgTrace() {
    if (NC::INotificationCenter* center = hostmodules::getNotificationCenter()) {
        center->registerObserver(this);
    }
    _loadData();
    _loadIgnoreVersions();
}

void XUpdatePkgTrace::setOwner(XUpdatePkg* channel) {
    MutexLock guard(lock);
    owner = channel;
}

std::shared_ptr<UpgradeData> XUpdatePkgTrace::getData() const {
    MutexLock guard(lock);
    return current;
}

void XUpdatePkgTrace::setData(const std::shared_ptr<UpgradeData>& data) {
    {
        MutexLock guard(lock);
        current = data;
    }
    if (data) {
        writeSettingString(settingkeys::upgrade, data->toStored());
    }
}

void XUpdatePkgTrace::clearData() {
    writeSettingString(settingkeys::upgrade, "");
}

bool XUpdatePkgTrace::isIgnoredVersion(const std::string& version) const {
    MutexLock guard(lock);
    return !version.empty() &&
           std::find(ignoreVersions.begin(), ignoreVersions.end(), version) != ignoreVersions.end();
}

void XUpdatePkgTrace::onNotification(NC::INotification* notification) {
    if (notification->type() != NC::packageType) {
        return;
    }
    const void* record = notification->data();
    if (!record) {
        return;
    }
    std::int32_t code = 0;
    std::memcpy(&code, record, sizeof(code)); // the sender's record may end behind its code
    if (code == NC::commandIgnore) {
        _addIgnoreVersion();
    } else {
        _command(code);
    }
}

void XUpdatePkgTrace::_command(std::int32_t code) {
    XUpdatePkg* channel = nullptr;
    {
        MutexLock guard(lock);
        channel = owner;
    }
    if (!channel) {
        return;
    }
    switch (code) {
    case NC::commandCheck:
        return channel->checkVersion();
    case NC::commandDownload:
        return channel->downloadPkg();
    case NC::commandInstall:
        return channel->installPkg();
    case NC::commandCancel:
        return channel->cancelDownload();
    default:
        return; // the channel's own events come back here
    }
}

void XUpdatePkgTrace::_loadData() {
    const auto data = std::make_shared<UpgradeData>();
    data->fromStored(jsonfields::readStored(settingkeys::upgrade));
    MutexLock guard(lock);
    current = data;
}

void XUpdatePkgTrace::_loadIgnoreVersions() {
    const std::string text = jsonfields::readStored(settingkeys::ignoreVersionList);
    if (text.empty()) {
        return;
    }
    // An object, where _saveIgnoreVersions writes an array: what was ignored here counts until
    // the next start only, what another writer stored is honoured.
    const nlohmann::json stored = nlohmann::json::parse(text);
    const auto versions = stored.find("versions");
    if (versions == stored.end() || !versions->is_array()) {
        return;
    }
    MutexLock guard(lock);
    ignoreVersions.clear();
    for (const nlohmann::json& version : *versions) {
        if (version.is_string()) {
            ignoreVersions.push_back(version.get<std::string>());
        }
    }
}

void XUpdatePkgTrace::_addIgnoreVersion() {
    const std::shared_ptr<UpgradeData> data = getData();
    const std::string version = data ? data->getVersion() : std::string();
    if (version.empty()) {
        return;
    }
    std::vector<std::string> versions;
    {
        MutexLock guard(lock);
        ignoreVersions.push_back(version);
        versions = ignoreVersions;
    }
    _saveIgnoreVersions(versions);
}

void XUpdatePkgTrace::_saveIgnoreVersions(const std::vector<std::string>& versions) {
    writeSettingString(settingkeys::ignoreVersionList, jsonfields::dump(versions));
}
