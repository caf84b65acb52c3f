#include <algorithm>

#include "sandbox/cli/comparison.h"
#include "sandbox/cli/notes.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

std::vector<std::string> texts(const Json& array) {
    return array.get<std::vector<std::string>>();
}

void compareLists(Comparison& comparison, const std::string& what,
                  const std::vector<std::string>& expected, const std::vector<std::string>& got) {
    if (expected == got) {
        return;
    }
    const auto ends = std::mismatch(expected.begin(), expected.end(), got.begin(), got.end());
    const auto at = static_cast<std::size_t>(ends.first - expected.begin());
    const auto element = [at](const std::vector<std::string>& list) {
        return at < list.size() ? list[at] : "nothing";
    };
    comparison.differ(what + ", number " + std::to_string(at + 1) + " of " +
                          std::to_string(expected.size()),
                      element(expected), element(got));
}

void compareDownloads(Comparison& comparison) {
    std::vector<std::string> names;
    for (const std::string& fileId : comparison.facts.report.downloads) {
        const auto found = std::find_if(
            comparison.materials.begin(), comparison.materials.end(),
            [&](const BuiltMaterial& material) { return material.offered.fileId == fileId; });
        names.push_back(found == comparison.materials.end() ? fileId : found->plan.name);
    }
    const Json expected = comparison.expect.value("downloads", Json::array());
    if (expected.is_number()) { // too many to name
        if (names.size() != expected.get<std::size_t>()) {
            comparison.differ("downloads", expected.dump(), std::to_string(names.size()));
        }
        return;
    }
    compareLists(comparison, "downloads", texts(expected), names);
}

void compareNotifications(Comparison& comparison) {
    std::vector<std::string> got;
    for (const Json& event : comparison.facts.events) {
        if (isKind(event, "notification")) {
            got.push_back("type " + std::to_string(event.value("type", 0)) + " " +
                          notifiedVersion(event));
        }
    }
    compareLists(comparison, "notifications",
                 texts(comparison.expect.value("notifications", Json::array())), got);
}

void compareLog(Comparison& comparison) {
    const auto& events = comparison.facts.events;
    for (const std::string& text : texts(comparison.expect.value("logs", Json::array()))) {
        const bool found = std::any_of(events.begin(), events.end(), [&](const Json& event) {
            return isKind(event, "log") && event.value("text", "").find(text) != std::string::npos;
        });
        if (!found) {
            comparison.differ("log", "a line with \"" + text + "\"", "none");
        }
    }
}

void reportFailures(Comparison& comparison) {
    for (const Json& event : comparison.facts.events) {
        if (isKind(event, "failure")) {
            comparison.differences.push_back("failure in " + event.value("where", "") + ": " +
                                             event.value("text", ""));
        }
    }
    for (const std::string& complaint : comparison.facts.report.complaints) {
        comparison.differences.push_back("platform: " + complaint);
    }
}

} // namespace

void compareRun(Comparison& comparison) {
    const int expectedExit = comparison.expect.value("hostExit", 0);
    if (comparison.facts.hostExit != expectedExit) {
        comparison.differ("exit status of the host", std::to_string(expectedExit),
                          std::to_string(comparison.facts.hostExit));
    }
    reportFailures(comparison);
    compareDownloads(comparison);
    compareNotifications(comparison);
    compareLog(comparison);
}

void comparePrograms(Comparison& comparison, const std::vector<std::string>& background) {
    std::vector<std::string> got;
    std::size_t started = 0;
    for (const Json& event : comparison.facts.events) {
        if (!isKind(event, "process")) {
            continue;
        }
        const std::string text = programText(event);
        started += event.value("started", false) ? 1 : 0;
        if (std::find(background.begin(), background.end(), text) == background.end()) {
            got.push_back(text);
        }
    }
    compareLists(comparison, "programs", texts(comparison.expect.value("programs", Json::array())),
                 got);
    if (comparison.facts.traces != started) {
        comparison.differ("traces of started programs", std::to_string(started),
                          std::to_string(comparison.facts.traces));
    }
}

void Comparison::differ(const std::string& what, const std::string& expected,
                        const std::string& got) {
    differences.push_back(what + ": expected " + expected + ", found " + got);
}

const RowGoal& Comparison::goalOf(const BuiltMaterial& material) const {
    return goals.rows.at(material.plan.name);
}

std::string joined(const std::vector<std::string>& list) {
    std::string text;
    for (const std::string& element : list) {
        text += (text.empty() ? "" : ", ") + element;
    }
    return text;
}

} // namespace sandbox
