#include "sandbox/report/knowledge.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/config.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/faults/faultkind.h"
#include "sandbox/faults/faultlog.h"
#include "sandbox/platform/filewrites.h"
#include "sandbox/report/plannedmaterials.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

constexpr std::size_t hashPart = 12; ///< "m01-6d33f6d67f1b"
constexpr std::int64_t zoneStep = 15LL * 60 * 1000;

/// The scenario of a run that was started in another folder than this one, or in this one.
Json readNear(const Folders& folders, const std::string& file) {
    std::optional<Json> found = readJson(pathOf(file));
    for (std::filesystem::path near = folders.root(); !found && near.has_relative_path();) {
        near = near.parent_path();
        found = readJson(near / pathOf(file));
    }
    return found.value_or(Json());
}

void readScenario(const Folders& folders, Knowledge& known) {
    const Json run = readJson(folders.state() / "run.json").value_or(Json::object());
    const std::string file = run.is_object() ? textOf(run, "scenario") : "";
    const Json scenario = file.empty() ? Json() : readNear(folders, file);
    if (!scenario.is_object()) {
        known.missing.push_back(file.empty()
                                    ? "run.json names no scenario"
                                    : "the scenario " + file + " cannot be read from here");
        return;
    }
    known.hasScenario = true;
    known.title = textOf(scenario, "title");
    known.sources.push_back("scenario: " + file + ", as it is now");
    takeScenario(scenario, known);
}

void readStorage(const Folders& folders, Knowledge& known) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folders.storage(), error)) {
        const std::string file = pathText(entry.path().filename());
        const std::size_t dash = file.rfind('-');
        if (dash != std::string::npos && file.size() - dash - 1 == hashPart) {
            known.stored[file] = file.substr(0, dash);
        }
    }
    if (!known.stored.empty()) {
        known.sources.emplace_back("storage: the names of its files");
    }
}

void readConfigFile(const Folders& folders, Knowledge& known) {
    Config config;
    try {
        config = readJson(folders.config()).value_or(Json::object()).get<Config>();
    } catch (const Json::exception&) {
        known.missing.emplace_back("config.json cannot be read");
        return;
    }
    known.osVersion = std::to_string(config.os.major) + "." + std::to_string(config.os.minor) +
                      "." + std::to_string(config.os.build);
    known.sources.emplace_back("config: config.json, as it is now");
}

void readFaultFile(const Folders& folders, Knowledge& known) {
    const auto file = folders.state() / "faults.jsonl";
    for (const Json& line : readFaultLog(file)) {
        SandboxFault fault;
        if (line.contains("at") && line["at"].is_number_integer()) {
            fault.at = line["at"].get<std::int64_t>();
        }
        fault.on = textOf(line, "on");
        fault.words = textOf(line, "words");
        const FaultKind* kind = findFaultKind(textOf(line, "fault"));
        fault.keepsAnswer = kind != nullptr && kind->keepsAnswer;
        known.faults.push_back(std::move(fault));
    }
    // By their time, those without it first.
    std::stable_sort(known.faults.begin(), known.faults.end(),
                     [](const SandboxFault& a, const SandboxFault& b) { return a.at < b.at; });
    if (!known.faults.empty()) {
        known.sources.emplace_back("faults: faults.jsonl");
    }
}

/// The zone of the log's clock, by the line that both files have first.
void setClocks(const Json& event, const Log& log, Knowledge& known) {
    const std::string text = trimmedEnd(textOf(event, "text"));
    const auto line = std::find_if(log.lines.begin(), log.lines.end(),
                                   [&](const LogLine& row) { return row.text == text; });
    if (line != log.lines.end() && line->at && log.hasDates) {
        const double steps = static_cast<double>(event["at"].get<std::int64_t>() - *line->at) /
                             static_cast<double>(zoneStep);
        known.clockOffset = static_cast<std::int64_t>(std::llround(steps)) * zoneStep;
    }
}

void readEvents(const Folders& folders, const Log& log, Knowledge& known) {
    std::istringstream text(readFile(folders.events()).value_or(""));
    for (std::string row; std::getline(text, row);) {
        Json event = Json::parse(row, nullptr, false);
        if (!event.is_object() || textOf(event, "kind").empty() || !event.contains("at") ||
            !event["at"].is_number_integer()) {
            continue;
        }
        if (textOf(event, "kind") != "log") {
            known.events.push_back(std::move(event));
        } else if (!known.clockOffset) {
            setClocks(event, log, known);
        }
    }
    if (!known.events.empty()) {
        known.sources.emplace_back("events: events.jsonl");
    }
    if (!known.clockOffset) {
        known.events.clear();
        known.missing.emplace_back("events.jsonl is not there, or has no clock in common with "
                                   "the log");
    }
    std::stable_sort(known.events.begin(), known.events.end(), [](const Json& a, const Json& b) {
        return a["at"].get<std::int64_t>() < b["at"].get<std::int64_t>();
    });
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

const Planned* Knowledge::planned(const std::string& name) const {
    const auto found = materials.find(name);
    return found == materials.end() ? nullptr : &found->second;
}

std::string Knowledge::nameOf(const std::string& fileId, const std::string& md5) const {
    if (const auto found = stored.find(fileId); found != stored.end()) {
        return found->second;
    }
    for (const auto& [name, material] : materials) {
        if (!material.md5.empty() && material.md5 == md5) {
            return name;
        }
    }
    std::vector<std::string> names;
    for (const auto& [file, name] : stored) {
        if (md5.size() >= hashPart && endsWith(file, "-" + md5.substr(0, hashPart))) {
            names.push_back(name);
        }
    }
    return names.size() == 1 ? names[0] : ""; // two materials may bring the same file
}

std::optional<std::int64_t> Knowledge::onLogClock(std::int64_t at) const {
    return clockOffset ? std::optional(at - *clockOffset) : std::nullopt;
}

bool endsWithPath(const std::string& path, const std::string& end) {
    const std::string whole = comparablePath(path);
    const std::string part = comparablePath(end);
    return !part.empty() && (whole == part || endsWith(whole, '\\' + part));
}

std::vector<std::string> faultWords(const Knowledge& known) {
    std::vector<std::string> words;
    for (const SandboxFault& fault : known.faults) {
        words.push_back(fault.on + ": " + fault.words);
    }
    return words;
}

Knowledge readKnowledge(const Folders& folders, const Log& log) {
    Knowledge known;
    readScenario(folders, known);
    readStorage(folders, known);
    readConfigFile(folders, known);
    readFaultFile(folders, known);
    readEvents(folders, log, known);
    return known;
}

} // namespace sandbox::report
