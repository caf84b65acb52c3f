#include "sandbox/cli/holdings.h"

#include <algorithm>
#include <set>
#include <stdexcept>

#include "sandbox/cli/layout.h"
#include "sandbox/cli/upgradeplan.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

constexpr const char* inUseFault = "in-use";
constexpr const char* downloads = "update\\"; // names by hashes

using Paths = std::set<std::string>; // comparable

Paths laidOut(const Scenario& scenario) {
    Paths paths;
    for (const std::string& module : moduleFiles()) {
        paths.insert(comparablePath(module));
    }
    for (const ClientFile& file : scenario.client.files) {
        paths.insert(comparablePath(file.path));
    }
    return paths;
}

/// With what updates may have brought by then.
Paths everThere(const Scenario& scenario) {
    Paths paths = laidOut(scenario);
    for (const MaterialPlan& material : scenario.platform.materials) {
        paths.insert(comparablePath(material.path));
    }
    for (const Phase& phase : scenario.phases) {
        const UpgradePlan upgrade = readUpgrade(upgradeIn(scenario.upgrade, phase.options));
        for (const ServedFilePlan& file : upgrade.files) {
            paths.insert(comparablePath(file.name));
        }
        for (const ClientFile& file :
             upgrade.package ? upgrade.package->files : std::vector<ClientFile>()) {
            paths.insert(comparablePath(file.path));
        }
    }
    return paths;
}

void checkHolding(const std::string& what, const std::string& file, const std::string& by,
                  const Scenario& scenario, const Paths& known) {
    const auto isHolder = [&by](const ClientFile& candidate) {
        return sameName(candidate.path, by) && candidate.file.kind == kindHolder;
    };
    if (std::none_of(scenario.client.files.begin(), scenario.client.files.end(), isHolder)) {
        throw std::runtime_error(what + ": \"by\" is no file of the client of kind holder: \"" +
                                 by + "\"");
    }
    const std::string path = comparablePath(file);
    if (known.count(path) == 0 && path.rfind(downloads, 0) != 0) {
        throw std::runtime_error(what + ": \"file\" is no file that the client has: \"" + file +
                                 "\"");
    }
}

} // namespace

void checkHoldings(const Scenario& scenario) {
    const Paths first = laidOut(scenario);
    for (const HeldPlan& held : scenario.client.held) {
        checkHolding("a held file", held.file, held.by, scenario, first);
    }
    const Paths known = everThere(scenario);
    for (const Phase& phase : scenario.phases) {
        for (const Fault& fault : phase.faults) {
            if (fault.name == inUseFault) {
                checkHolding("phase \"" + phase.title + "\", " + fault.title(), fault.text("file"),
                             fault.text("by"), scenario, known);
            }
        }
    }
}

} // namespace sandbox
