#include "platform/fileversion.h"
#include "sandbox/cli/session.h"
#include "sandbox/cli/set.h"
#include "sandbox/cli/uicommands.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

std::string versionOfClient(const Folders& folders) {
    const auto version =
        platform::readFileVersion(toClientPath(folders.client()) + "\\OrvSecurityver.dll");
    std::string text;
    for (std::size_t i = 0; version && i < version->size(); ++i) {
        text += (i == 0 ? "" : ".") + std::to_string(version->at(i));
    }
    return text;
}

} // namespace

ScriptHands Session::hands() {
    return {[this](int code) { sendCommand(folders, code); },
            [this](const nlohmann::json& change) { applySet(folders, change); },
            [this] { platform->release(); }, [this] { return platform->isHeld(); },
            [this] {
                return versionOfClient(folders);
            }};
}

} // namespace sandbox
