#include "sandbox/cli/uicommands.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

#include "host/notificationcenter.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/filelock.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {
namespace {

constexpr std::array<std::pair<const char*, NC::PackageCode>, 5> commands{
    {{"check", NC::commandCheck},
     {"download", NC::commandDownload},
     {"install", NC::commandInstall},
     {"ignore", NC::commandIgnore},
     {"cancel", NC::commandCancel}}};

} // namespace

std::optional<int> commandOf(const std::string& word) {
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const auto& command) { return word == command.first; });
    return found == commands.end() ? std::nullopt : std::optional<int>(found->second);
}

std::string wordOfCommand(int code) {
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const auto& command) { return code == command.second; });
    return found == commands.end() ? "" : found->first;
}

std::string wordsOfCommands() {
    std::string words;
    for (const auto& [word, code] : commands) {
        words += (words.empty() ? "" : ", ") + std::string(word);
    }
    return words;
}

void sendCommand(const Folders& folders, int code) {
    const std::string line = nlohmann::json{{"code", code}}.dump() + '\n';
    const FileLock lock(lockOf(folders.commands())); // the host takes what is there as a whole
    if (!lock.isHeld() || !appendToFile(folders.commands(), line)) {
        throw std::runtime_error("cannot write " + folders.commands().string());
    }
}

void dropCommands(const Folders& folders) {
    const FileLock lock(lockOf(folders.commands()));
    std::filesystem::remove(folders.commands());
}

} // namespace sandbox
