#include <algorithm>
#include <map>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/doctor/checks.h"
#include "sandbox/platform/otherprocess.h"
#include "sandbox/platform/wineprocess.h"

namespace sandbox::doctor {
namespace {

using Json = nlohmann::json;

constexpr const char* wineServer = "wineserver";

/// A running program has its own file in use, and the client's host its modules. Under Wine some
/// are open in Wine's server alone.
bool isExpected(const Snapshot& snapshot, const OpenFile& file) {
    const std::string program = comparablePath(leafOf(file.program));
    return sameName(leafOf(file.path), program) || program == "trayhost" ||
           program == "trayhost.exe" || (snapshot.hostRuns && program.rfind(wineServer, 0) == 0);
}

bool isRunning(const Places& places, long long id, const std::string& program) {
    if (places.wine.empty()) {
        return processFile(id) == program;
    }
    const auto relative = std::filesystem::path(program).lexically_relative(places.client);
    return isWineProcess(id, "D:\\client\\" + toClientPath(relative), places.wine);
}

void addHolder(const Places& places, const Json& holder, std::vector<OpenFile>& open) {
    const long long id = holder.at("id").get<long long>();
    const std::string program = holder.at("program").get<std::string>();
    if (!isRunning(places, id, program)) {
        return;
    }
    std::string files = holder.at("file").get<std::string>() + ", ";
    for (std::size_t end = 0; (end = files.find(", ")) != std::string::npos;) {
        open.push_back({files.substr(0, end), id, program});
        files.erase(0, end + 2);
    }
}

/// What the run has started to keep files in use, as far as it still runs. Wine does not tell
/// which of its processes has a file open.
void addHolders(const Places& places, std::vector<OpenFile>& open) {
    const Json state = readJson(places.runState).value_or(Json::object());
    try {
        for (const Json& holder : state.value("holders", Json::array())) {
            addHolder(places, holder, open);
        }
    } catch (const Json::exception&) {
        return; // a damaged note of the sandbox is no matter of the client
    }
}

} // namespace

void checkUse(const Snapshot& snapshot, Report& report) {
    std::vector<OpenFile> open = snapshot.open;
    addHolders(snapshot.places, open);
    std::map<std::string, OpenFile> byFile;
    for (const OpenFile& file : open) {
        // Wine's server has open what its programs have; they say more.
        const bool isServer = file.program.find(wineServer) != std::string::npos;
        const auto [known, isNew] = byFile.emplace(comparablePath(file.path), file);
        if (!isNew && !isServer) {
            known->second = file;
        }
    }
    for (const auto& [key, file] : byFile) {
        const bool waits = snapshot.waitingFor(key) != nullptr;
        const std::string by = file.program + " (process " + std::to_string(file.process) + ")";
        report.inUse.push_back({file.path, by, waits});
        if (!waits && !isExpected(snapshot, file)) {
            report.add(Code::fileInUse, file.path, file.path + " is in use by " + by);
        }
    }
}

} // namespace sandbox::doctor
