#include "sandbox/check/scenariocheck.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "sandbox/check/members.h"
#include "sandbox/check/scenarioparts.h"
#include "sandbox/check/scenarioshape.h"

namespace sandbox::check {
namespace {

/// Of a file that is older than its row: it is placed where nothing stands, and refused later.
constexpr std::string_view olderFile = "version-not-the-files";

/// A mistake that is meant when the scenario expects the refusal that comes of it.
struct Excuse {
    std::string_view code; ///< or its begin
    std::string_view reason;
};

constexpr std::array<Excuse, 19> excuses{{
    {"expression-never", "for another client version"},
    {"expression-never", "for another system version"},
    {"osver-", "for another system version"},
    {"target-refused", "target outside the client"},
    {"hash-refused", "hash is no plain name"},
    {"hash-", "content is not the announced one"},
    {"hash-", "download failed"},
    {"non-cab-wrong", "cabinet does not expand"},
    {"non-cab-wrong", "content is not the announced one"},
    {"cabinet-member-outside", "cabinet does not expand"},
    {"cabinet-member-folder", "cabinet does not expand"},
    {"cabinet-member-missing", "cabinet does not expand"},
    {"cabinet-member-missing", "file is missing in its cabinet"},
    {"version-never-newer", "already up to date"},
    {"version-never-newer", "not newer than what stands"},
    {olderFile, "not newer than what stands"},
    {"version-never-newer", "its group was taken back"},
    {"version-never-newer", "not tried, its group had failed"},
    {"cabinet-member-", "its group was taken back"},
}};

bool isMeant(const Mistake& mistake, const Expected& expected) {
    return (!expected.isPlaced || mistake.code == olderFile) &&
           std::any_of(excuses.begin(), excuses.end(), [&](const Excuse& excuse) {
               return mistake.code.rfind(excuse.code, 0) == 0 &&
                      expected.reasons.count(std::string(excuse.reason)) != 0;
           });
}

void checkOffered(const JsonText& scenario, const std::string& file, const HashesOf& hashesOf,
                  Mistakes& mistakes) {
    const Offered offered = offeredIn(scenario, hashesOf);
    for (const Material& material : offered.materials) {
        Mistakes own(file);
        checkMaterial(offered, material, own);
        const Expected expected = expectedOf(scenario, material.name);
        for (const Mistake& mistake : own.sorted()) {
            if (!isMeant(mistake, expected)) {
                mistakes.add(mistake.line, mistake.code.c_str(), mistake.text);
            }
        }
    }
    checkTogether(offered, mistakes);
}

} // namespace

std::vector<Mistake> checkScenario(const std::string& text, const std::string& file,
                                   const HashesOf& hashesOf, const SetRefusal& refusalOfSet) {
    Mistakes mistakes(file);
    const JsonText scenario(text, mistakes);
    if (!scenario.value().is_discarded()) {
        const StandingFiles standing = standingIn(objectAt(scenario.value(), "client"));
        checkShape(scenario, "", scenarioShape(), mistakes);
        checkClient(scenario, standing, mistakes);
        checkMaterialFiles(scenario, mistakes);
        checkUpgrades(scenario, mistakes);
        checkOffered(scenario, file, hashesOf, mistakes);
        checkPhases(scenario, standing, mistakes);
        checkSets(scenario, refusalOfSet, mistakes);
    }
    return mistakes.sorted();
}

std::vector<Mistake> checkFormat(const std::string& text, const std::string& file) {
    Mistakes mistakes(file);
    const JsonText scenario(text, mistakes);
    if (!scenario.value().is_discarded()) {
        checkShape(scenario, "", scenarioShape(), mistakes);
        checkPhases(scenario, standingIn(objectAt(scenario.value(), "client")), mistakes);
    }
    return mistakes.sorted();
}

} // namespace sandbox::check
