#include "sandbox/cli/sessionreport.h"

#include <utility>

namespace sandbox {
namespace {

using Json = nlohmann::json;

Json rowsOf(const std::vector<Row>& rows) {
    Json told = Json::array();
    for (const Row& row : rows) {
        told.push_back({{"material", row.material->plan.name},
                        {"path", row.material->path},
                        {"state", wordOf(row.state)},
                        {"reason", row.reason}});
    }
    return told;
}

} // namespace

void SessionReport::begin(const Scenario& scenario, const std::string& file,
                          const ClientSystem& system) {
    top = {{"scenario", file},
           {"title", scenario.title},
           {"folder", system.folders().root().string()},
           {"system", system.name()}};
}

void SessionReport::host(const HostResult& result, const std::filesystem::path& output,
                         const PhaseFacts& facts) {
    current["materials"] = rowsOf(facts.rows);
    current["host"] = {{"exit", result.exit},
                       {"seconds", result.seconds},
                       {"peakMemory", result.peakMemory},
                       {"output", output.string()}};
}

void SessionReport::step(const Phase& phase, const std::vector<std::string>& differences) {
    Json told = std::exchange(current, Json::object());
    told["do"] = phase.isRestart ? "restart" : "run";
    told["title"] = phase.title;
    told["differences"] = differences;
    steps.push_back(std::move(told));
}

Json SessionReport::run() const {
    Json told = top;
    told["steps"] = steps;
    return told;
}

Json SessionReport::hosting() const {
    Json told = top;
    told.update(current);
    return told;
}

} // namespace sandbox
