#include "sandbox/cli/uicommands.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "host/notificationcenter.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/filelock.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {
namespace {

struct Command {
    const char* word;
    NC::PackageCode code;
    const char* meaning;
};

constexpr std::array<Command, 5> commands{{
    {"check", NC::commandCheck, "ask for an offer"},
    {"download", NC::commandDownload, "fetch the package; before a cancel only its first percent"},
    {"install", NC::commandInstall, "start the package's setup"},
    {"ignore", NC::commandIgnore, "take the offered version as one to be ignored"},
    {"cancel", NC::commandCancel, "break the download off"},
}};

} // namespace

std::optional<int> commandOf(const std::string& word) {
    const auto* found = std::find_if(commands.begin(), commands.end(),
                                     [&](const Command& command) { return word == command.word; });
    return found == commands.end() ? std::nullopt : std::optional<int>(found->code);
}

std::string wordOfCommand(int code) {
    const auto* found = std::find_if(commands.begin(), commands.end(),
                                     [&](const Command& command) { return code == command.code; });
    return found == commands.end() ? "" : found->word;
}

std::string wordsOfCommands() {
    std::string words;
    for (const Command& command : commands) {
        words += (words.empty() ? "" : ", ") + std::string(command.word);
    }
    return words;
}

std::string helpOfCommands() {
    std::string lines;
    for (const Command& command : commands) {
        lines += std::string("  ") + command.word + ": " + command.meaning + "\n";
    }
    return lines;
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
