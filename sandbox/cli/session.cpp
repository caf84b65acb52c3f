#include "sandbox/cli/session.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "sandbox/cli/holders.h"
#include "sandbox/cli/layout.h"
#include "sandbox/cli/restart.h"
#include "sandbox/cli/runstate.h"
#include "sandbox/cli/set.h"
#include "sandbox/cli/storedasks.h"
#include "sandbox/cli/uicommands.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr std::size_t differencesShown = 40;
constexpr std::size_t differenceLength = 600; // a list of all files may be part of one

std::string differenceText(const std::string& text) {
    return text.size() <= differenceLength ? text : text.substr(0, differenceLength) + "...";
}

/// A run with a script ends with it, any other one with its run of the Kelvar channel.
std::vector<std::string> hostArguments(const Phase& phase) {
    using Arguments = std::vector<std::string>;
    const Arguments usual = phase.script.empty() ? Arguments{"--runs", "1", "--limit", "120000"}
                                                 : Arguments{"--limit", "300000"};
    return phase.options.value("host", usual);
}

std::string secondsText(double seconds) {
    const auto hundredths = std::lround(seconds * 100);
    const std::string rest = std::to_string(hundredths % 100);
    return std::to_string(hundredths / 100) + "." + (rest.size() < 2 ? "0" : "") + rest + " s";
}

} // namespace

Session::Session(Scenario read, std::string file, ClientSystem& machine,
                 std::filesystem::path built, Console& output)
    : scenario(std::move(read)), scenarioFile(std::move(file)), system(machine),
      folders(machine.folders()), binaries(std::move(built)), console(output) {}

Session::~Session() {
    if (hasBegun && !keep) {
        try {
            endHolders(system);
            system.shutDown();
        } catch (const std::exception& error) {
            console.row(Mark::fault, {error.what()}, {});
        }
    }
}

bool Session::run(std::size_t phases) {
    layOut();
    bool good = true;
    const std::size_t count = std::min(phases, scenario.phases.size());
    for (std::size_t i = 0; i < count && good; ++i) {
        const Phase& phase = scenario.phases[i];
        console.heading("Step " + std::to_string(i + 1) + " of " +
                        std::to_string(scenario.phases.size()) + ": " + phase.title);
        good = conclude(phase, phase.isRestart ? restart() : runClient(phase));
    }
    return good;
}

void Session::layOut() {
    console.heading(scenario.title);
    refuseHosted(folders);
    hasBegun = true;
    const auto earlier = systemOf(folders);
    endHolders(*earlier);
    earlier->shutDown();
    clearRunFolder(folders);
    system.install(binaries);
    platform = std::make_unique<UpdatePlatform>(
        folders.storage().string(), [this](const PlatformEvent& event) { feed.put(event); });
    platform->start();
    layOutClient(scenario, system, binaries, platform->address());
    build();
    expectation =
        std::make_unique<Expectation>(materials, readClient(system), scenario.client.background);
    hold();
    describe();
    report.begin(scenario, scenarioFile, system);
}

void Session::build() {
    const double count = static_cast<double>(scenario.platform.materials.size());
    materials = buildMaterials(scenario, folders.storage(), [&](std::size_t made) {
        console.progress("building materials", static_cast<double>(made) / count);
    });
}

void Session::describe() {
    const auto tell = [this](const char* what, const std::string& text) {
        console.row(Mark::none, {what, text}, {8});
    };
    tell("folder", folders.root().string());
    tell("system", system.name());
    tell("client", "version " + scenario.client.version + ", " +
                       counted(scenario.client.files.size(), "file") + ", " +
                       std::to_string(scenario.client.fileListEntries) +
                       " entries in filelist.xml");
    for (const Holder& holder : readRunState(folders).holders) {
        tell("in use", holder.file);
    }
    std::uint64_t bytes = 0;
    for (const BuiltMaterial& material : materials) {
        bytes += material.storedSize;
    }
    if (scenario.platform.version.empty()) {
        return;
    }
    tell("platform", "packet " + scenario.platform.version + ", " +
                         counted(materials.size(), "material") + ", " + sizeText(bytes));
}

void Session::hold() {
    RunState state;
    // The next call may come from another folder.
    state.scenario = std::filesystem::absolute(scenarioFile).lexically_normal().string();
    state.address = platform->address();
    state.holders = startHolders(scenario, system);
    saveRunState(folders, state);
}

Session::Offered Session::offeredIn(const Phase& phase) const {
    Offered offered;
    const Offer offer = offerOf(scenario, materials, phase.options);
    for (const BuiltMaterial& material : materials) {
        for (const OfferedMaterial& candidate : offer.materials) {
            if (candidate.name == material.plan.name) {
                offered.push_back(&material);
            }
        }
    }
    return offered;
}

/// What the servers have and expect in the run.
void Session::serve(const Phase& phase) {
    upgrade = buildUpgrade(readUpgrade(upgradeIn(scenario.upgrade, phase.options)), scenario,
                           system, binaries, platform->address());
    const Json options = withStoredAsks(phase.options, expectation->lastState());
    ExpectedRun expected = expectedRunOf(options);
    if (scenario.platform.version.empty()) {
        expected.questions = {0};
    }
    platform->beginRun(offerOf(scenario, materials, options), expected, upgrade.offer,
                       expectedUpgradeOf(scenario, upgrade, options), serverFaults(phase));
}

PhaseFacts Session::runClient(const Phase& phase) {
    const Offered offered = offeredIn(phase);
    serve(phase);
    dropCommands(folders); // that came as the last run ended
    if (phase.options.contains("set")) {
        applySet(folders, phase.options.at("set"));
    }
    beginFaults(phase);
    RunView view(console, offered, upgrade, scenario.client.background);
    RowTracker tracker(offered, [&view](const Row& row) { view.row(row); });
    Script script(phase.script, hands());
    const auto output = folders.state() / ("host" + std::to_string(phasesDone + 1) + ".out");
    HostResult result =
        runHost(system, hostArguments(phase), output,
                {feed, tracker, view, phase.script.empty() ? nullptr : &script, phase.isJudged});
    PhaseFacts facts;
    facts.hostExit = result.exit;
    facts.events = std::move(result.events);
    facts.rows = tracker.all();
    facts.report = platform->endRun();
    endFaults(phase, facts.report.complaints);
    facts.traces = result.traces;
    facts.missed = result.missed;
    report.host(result, output, facts);
    console.heading("  Result");
    showSummary(facts);
    console.line("host ran " + secondsText(result.seconds) + ", peak memory " +
                 sizeText(result.peakMemory) + ", its output in " + output.string());
    return facts;
}

PhaseFacts Session::restart() {
    PhaseFacts facts;
    facts.isRestart = true;
    if (!restartMachine(system, console).isGood()) {
        facts.report.complaints.emplace_back("a delayed move failed");
    }
    return facts;
}

void Session::showSummary(const PhaseFacts& facts) {
    if (facts.rows.empty()) {
        if (!scenario.platform.version.empty()) {
            console.line("no materials were offered");
        }
        return;
    }
    std::map<std::string, std::size_t> counts;
    for (const Row& row : facts.rows) {
        ++counts[wordOf(row.state) + (row.reason.empty() ? "" : ": " + row.reason)];
    }
    std::vector<std::vector<std::string>> rows;
    rows.reserve(counts.size());
    for (const auto& [outcome, count] : counts) {
        rows.push_back({outcome, std::to_string(count)});
    }
    console.table({"materials", "count"}, rows);
}

bool Session::conclude(const Phase& phase, const PhaseFacts& facts) {
    const std::vector<std::string> differences =
        expectation->compare(phase.expect, facts, upgrade, readClient(system));
    report.step(phase, differences);
    RunState state = readRunState(folders);
    state.phase = ++phasesDone;
    saveRunState(folders, state);
    if (differences.empty()) {
        console.row(Mark::good, {"everything is as the scenario expects"}, {});
        return true;
    }
    console.row(Mark::fault, {counted(differences.size(), "difference")}, {});
    for (std::size_t i = 0; i < std::min(differences.size(), differencesShown); ++i) {
        console.line("    " + differenceText(differences[i]));
    }
    return false;
}

} // namespace sandbox
