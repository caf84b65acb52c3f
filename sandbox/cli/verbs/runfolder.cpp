#include "sandbox/cli/verbs/runfolder.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <stdexcept>

namespace sandbox {

void addFolder(CLI::App* command, std::string& folder) {
    command->add_option("--folder", folder, "Folder of the run")
        ->type_name("FOLDER")
        ->capture_default_str();
}

Folders foldersOf(const std::string& folder) {
    return Folders(std::filesystem::absolute(folder).lexically_normal());
}

Folders existingRun(const std::string& folder) {
    Folders folders = foldersOf(folder);
    if (!std::filesystem::exists(folders.config())) {
        throw std::runtime_error(folders.root().string() +
                                 " holds no run; \"xsandbox run SCENARIO\" makes one");
    }
    return folders;
}

std::unique_ptr<ClientSystem> existingSystem(const std::string& folder) {
    return systemOf(existingRun(folder));
}

} // namespace sandbox
