#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/events.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/hostprocess.h"

namespace {

namespace fs = std::filesystem;

/// The folder of the run that this program lies in; empty outside a run.
fs::path runRoot(const fs::path& program) {
    fs::path folder = program.parent_path();
    while (!fs::exists(folder / "sandbox" / "config.json")) {
        if (folder == folder.parent_path()) {
            return {};
        }
        folder = folder.parent_path();
    }
    return folder;
}

/// The name of the trace tells the moment and the process, so that no two are the same.
bool leaveTrace(const fs::path& program, const fs::path& root,
                const std::vector<std::string>& arguments) {
    const std::string name = std::to_string(sandbox::monotonicMilliseconds()) + "-" +
                             std::to_string(sandbox::processNumber()) + ".json";
    const fs::path relative = program.lexically_relative(root / "client");
    const nlohmann::json trace{{"program", sandbox::pathText(relative.generic_u8string())},
                               {"arguments", arguments}};
    return sandbox::writeJson(root / "sandbox" / "started" / name, trace);
}

} // namespace

/// A program of the client that does nothing but leave a trace of its start: a JSON file
/// in the run's folder "sandbox/started". Status 1 when it cannot.
int main(int count, char** arguments) {
    try {
        const fs::path program = sandbox::executableFile();
        const fs::path root = runRoot(program);
        return !root.empty() && leaveTrace(program, root, sandbox::ownArguments(count, arguments))
                   ? 0
                   : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
