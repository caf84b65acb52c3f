#include <algorithm>

#include "sandbox/cli/comparison.h"
#include "sandbox/cli/notes.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

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
    compareLists(comparison, "downloads", expected.get<std::vector<std::string>>(), names);
}

void compareNotifications(Comparison& comparison) {
    std::vector<std::string> got;
    for (const Json& event : comparison.facts.events) {
        if (isKind(event, "notification") && event.value("type", 0) != NC::packageType) {
            got.push_back("type " + std::to_string(event.value("type", 0)) + " " +
                          notifiedVersion(event));
        }
    }
    compareLists(comparison, "notifications", textsOf(comparison.expect, "notifications"), got);
}

void compareLog(Comparison& comparison) {
    const auto& events = comparison.facts.events;
    for (const std::string& text : textsOf(comparison.expect, "logs")) {
        const bool found = std::any_of(events.begin(), events.end(), [&](const Json& event) {
            return isKind(event, "log") && event.value("text", "").find(text) != std::string::npos;
        });
        if (!found) {
            comparison.differ("log", "a line with \"" + text + "\"", "none");
        }
    }
}

/// Failures that the scenario does not expect; each one that it does has to come.
void compareFailures(Comparison& comparison) {
    std::vector<std::string> expected = textsOf(comparison.expect, "failures");
    for (const Json& event : comparison.facts.events) {
        if (!isKind(event, "failure")) {
            continue;
        }
        const std::string text = event.value("where", "") + ": " + event.value("text", "");
        const auto found =
            std::find_if(expected.begin(), expected.end(), [&](const std::string& part) {
                return text.find(part) != std::string::npos;
            });
        if (found != expected.end()) {
            expected.erase(found);
        } else {
            comparison.differences.push_back("failure in " + text);
        }
    }
    for (const std::string& part : expected) {
        comparison.differ("failure", part, "none");
    }
}

void reportComplaints(Comparison& comparison) {
    for (const std::string& complaint : comparison.facts.report.complaints) {
        comparison.differences.push_back("platform: " + complaint);
    }
    if (!comparison.facts.missed.empty()) {
        comparison.differences.push_back("what the ui waits for has not come: " +
                                         comparison.facts.missed);
    }
}

} // namespace

void compareEnd(Comparison& comparison) {
    const int expectedExit = comparison.expect.value("hostExit", 0);
    if (comparison.facts.hostExit != expectedExit) {
        comparison.differ("exit status of the host", std::to_string(expectedExit),
                          std::to_string(comparison.facts.hostExit));
    }
    compareFailures(comparison);
    reportComplaints(comparison);
    compareLog(comparison);
}

void compareRun(Comparison& comparison) {
    compareEnd(comparison);
    compareDownloads(comparison);
    compareNotifications(comparison);
    compareUpgrade(comparison);
    compareReports(comparison);
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
    compareLists(comparison, "programs", textsOf(comparison.expect, "programs"), got);
    if (comparison.facts.traces != started) {
        comparison.differ("traces of started programs", std::to_string(started),
                          std::to_string(comparison.facts.traces));
    }
}

} // namespace sandbox
