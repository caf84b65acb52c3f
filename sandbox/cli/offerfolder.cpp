#include "sandbox/cli/offerfolder.h"

#include <algorithm>
#include <stdexcept>

#include "sandbox/check/offercheck.h"
#include "sandbox/cli/built.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/workfolder.h"
#include "sandbox/server/answers.h"

namespace sandbox {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// Places of the questions in the conversation with the platform.
constexpr std::size_t packetDiffQuestion = 1;
constexpr std::size_t materialsQuestion = 4;

void ignoreProgress(std::size_t /*made*/) {}

Scenario withOne(const fs::path& file, const std::string& material) {
    Scenario scenario = readScenario(file);
    auto& all = scenario.platform.materials;
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const MaterialPlan& plan) { return plan.name != material; }),
              all.end());
    for (MaterialPlan& plan : all) {
        plan.md5.clear(); // what is claimed is not what is asked for
    }
    return scenario;
}

} // namespace

std::optional<check::Hashes> hashesIn(const fs::path& scenario, const std::string& material) {
    try {
        const WorkFolder folder;
        if (folder.path().empty()) {
            return std::nullopt;
        }
        const auto built =
            buildMaterials(withOne(scenario, material), folder.path(), ignoreProgress);
        if (built.empty()) {
            return std::nullopt;
        }
        return check::Hashes{built.front().offered.md5, built.front().fileMd5};
    } catch (const std::exception&) {
        return std::nullopt; // what is wrong is told by the check
    }
}

void writeOffer(const fs::path& scenarioFile, const fs::path& folder) {
    const Scenario scenario = readScenario(scenarioFile);
    if (scenario.platform.version.empty()) {
        throw std::runtime_error(scenarioFile.string() +
                                 " has no platform, so there is nothing to offer");
    }
    if (fs::exists(folder) && !fs::is_empty(folder)) {
        throw std::runtime_error(folder.string() + " is not empty");
    }
    fs::create_directories(folder);
    const auto built = buildMaterials(scenario, folder, ignoreProgress);
    const Offer offer = offerOf(scenario, built, Json::object());
    ExpectedRun run;
    run.channel = scenario.platform.channelId;
    Json answer = Json::parse(answerTo(materialsQuestion, offer, run, ""));
    answer.update(Json::parse(answerTo(packetDiffQuestion, offer, run, "")));
    if (!writeJson(folder / check::offerFile, answer)) {
        throw std::runtime_error("cannot write " + (folder / check::offerFile).string());
    }
}

} // namespace sandbox
