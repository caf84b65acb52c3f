#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sandbox/common/events.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/hostprocess.h"

namespace {

namespace fs = std::filesystem;

/// The folder of the run that this program lies in; empty outside a run.
fs::path runRoot(const fs::path& program) {
    for (fs::path folder = program.parent_path(); folder != folder.root_path();
         folder = folder.parent_path()) {
        if (fs::exists(folder / "sandbox" / "config.json")) {
            return folder;
        }
    }
    return {};
}

/// The name of the trace tells the moment and the process, so that no two are the same.
bool leaveTrace(const fs::path& program, const fs::path& root,
                const std::vector<std::string>& arguments) {
    const std::string name = std::to_string(sandbox::monotonicMilliseconds()) + "-" +
                             std::to_string(sandbox::threadNumber()) + ".json";
    const nlohmann::json trace{
        {"program", program.lexically_relative(root / "client").generic_string()},
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
        const std::vector<std::string> own(arguments + 1, arguments + count);
        return !root.empty() && leaveTrace(program, root, own) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
