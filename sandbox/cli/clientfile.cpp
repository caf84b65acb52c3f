#include "sandbox/cli/clientfile.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/events.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/hostprocess.h"

namespace sandbox {

namespace fs = std::filesystem;

fs::path clientFile(const Folders& folders, const std::string& clientPath) {
    std::string path = clientPath;
    std::replace(path.begin(), path.end(), '\\', '/');
    const fs::path relative = fs::path(path).lexically_normal();
    if (relative.empty() || relative == "." || relative.has_root_path() ||
        *relative.begin() == "..") {
        throw std::runtime_error("not below the client's folder: \"" + clientPath + "\"");
    }
    return folders.client() / relative;
}

fs::path tracesFolder(const Folders& folders) {
    return folders.state() / "started";
}

Folders runOf(const fs::path& program) {
    fs::path folder = program.parent_path();
    while (!fs::exists(Folders(folder).config())) {
        if (folder == folder.parent_path()) {
            throw std::runtime_error(pathText(program) + " lies in no run");
        }
        folder = folder.parent_path();
    }
    return Folders(folder);
}

void leaveTrace(const Folders& folders, const fs::path& program,
                const std::vector<std::string>& arguments) {
    // The moment and the process: no two names are the same.
    const std::string name =
        std::to_string(monotonicMilliseconds()) + "-" + std::to_string(processNumber()) + ".json";
    const fs::path relative = program.lexically_relative(folders.client());
    const nlohmann::json trace{{"program", pathText(relative.generic_u8string())},
                               {"arguments", arguments}};
    if (!writeJson(tracesFolder(folders) / name, trace)) {
        throw std::runtime_error("cannot write a trace into " + pathText(tracesFolder(folders)));
    }
}

} // namespace sandbox
