#include "sandbox/cli/runstate.h"

#include <stdexcept>

#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/otherprocess.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

std::filesystem::path stateFile(const Folders& folders) {
    return folders.state() / "run.json";
}

} // namespace

RunState readRunState(const Folders& folders) {
    const Json json = readJson(stateFile(folders)).value_or(Json::object());
    RunState state;
    try {
        state.scenario = json.value("scenario", "");
        state.phase = json.value("phase", std::size_t{0});
        state.address = json.value("address", "");
        for (const Json& holder : json.value("holders", Json::array())) {
            state.holders.push_back({holder.at("id").get<long long>(),
                                     holder.at("program").get<std::string>(),
                                     holder.at("file").get<std::string>()});
        }
    } catch (const Json::exception&) {
        return {};
    }
    return state;
}

void saveRunState(const Folders& folders, const RunState& state) {
    Json holders = Json::array();
    for (const Holder& holder : state.holders) {
        holders.push_back({{"id", holder.id}, {"program", holder.program}, {"file", holder.file}});
    }
    const Json json{{"scenario", state.scenario},
                    {"phase", state.phase},
                    {"address", state.address},
                    {"holders", holders}};
    if (!writeJson(stateFile(folders), json)) {
        throw std::runtime_error("cannot write " + stateFile(folders).string());
    }
}

std::vector<std::string> endHolders(const ClientSystem& system) {
    RunState state = readRunState(system.folders());
    std::vector<std::string> ended;
    for (const Holder& holder : state.holders) {
        // The number may belong to another program by now.
        if (system.runs(holder.id, holder.program) && endProcessOf(holder.id)) {
            ended.push_back(holder.program + ", which kept " + holder.file);
        }
    }
    if (!state.holders.empty()) {
        state.holders.clear();
        saveRunState(system.folders(), state);
    }
    return ended;
}

} // namespace sandbox
