#include "sandbox/cli/uiscript.h"

#include <stdexcept>

#include "host/notificationcenter.h"
#include "host/settings.h"
#include "sandbox/cli/uicommands.h"
#include "sandbox/cli/upgraderecord.h"

namespace sandbox {

UiScript::UiScript(const Folders& runFolders, const std::vector<std::string>& words)
    : folders(runFolders), all(words) {
    for (const std::string& one : words) {
        if (!commandOf(one)) {
            throw std::runtime_error("\"" + one + "\" is none of " + wordsOfCommands());
        }
    }
}

bool UiScript::begin() {
    if (next == all.size()) {
        return false;
    }
    word = all[next++];
    arrived = confirmed = listed = false;
    if (!is("cancel")) {
        codes.clear();
    }
    sendCommand(folders, *commandOf(word));
    return true;
}

void UiScript::see(const nlohmann::json& event) {
    const bool isPackage = event.value("type", 0) == NC::packageType;
    if (isKind(event, "delivered") && isPackage && event.value("code", 0) == commandOf(word)) {
        arrived = true;
    } else if (isKind(event, "log") && isConfirmedSilently(event.value("text", ""))) {
        confirmed = true;
    } else if (isKind(event, "setting") &&
               event.value("key", "") == settingkeys::ignoreVersionList) {
        listed = true;
    } else if (const auto note = packageNote(event); note && note->isEvent()) {
        codes.insert(note->code);
    }
}

bool UiScript::isToBeCancelled() const {
    return is("download") && next < all.size() && all[next] == "cancel";
}

bool UiScript::isAnswered() const {
    if (!arrived) {
        return false;
    }
    if (is("check")) {
        return confirmed || has(NC::eventUpgradeInfo);
    }
    if (is("install")) {
        return has(NC::eventInstallFinish);
    }
    return is("ignore") || has(NC::eventDownloadFinish) ||
           (isToBeCancelled() && has(NC::eventDownloadProgress));
}

std::string UiScript::awaited() const {
    if (!arrived) {
        return "the command has not arrived";
    }
    const int code = is("check")     ? NC::eventUpgradeInfo
                     : is("install") ? NC::eventInstallFinish
                                     : NC::eventDownloadFinish;
    return "no event " + std::to_string(code) + " has come";
}

std::string UiScript::fault() const {
    if (!isAnswered()) {
        return word + ": " + awaited();
    }
    const bool hasPackage = statusOf(storedRecord(folders)) == packageOnDisk;
    if (is("download") && !isToBeCancelled() && !hasPackage) {
        return word + ": has ended without the package";
    }
    if (is("cancel") && hasPackage) {
        return word + ": came too late, the package is on disk";
    }
    return is("ignore") && !listed ? word + ": there is no version to be ignored" : "";
}

} // namespace sandbox
