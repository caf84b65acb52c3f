#include <algorithm>

#include "sandbox/cli/comparison.h"
#include "sandbox/cli/notes.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

/// The events of the channel in words; those of a transfer's progress as one.
class EventWords {
public:
    void add(const PackageNote& note) {
        if (note.code == NC::eventDownloadProgress) {
            addProgress(note.text);
            return;
        }
        endProgress();
        words.push_back(std::to_string(note.code) +
                        (note.code == NC::eventUpgradeInfo ? offerWords(note.text) : ""));
    }

    std::vector<std::string> take() {
        endProgress();
        return std::move(words);
    }

private:
    static std::string offerWords(const std::string& text) {
        const Json offer = Json::parse(text, nullptr, false);
        if (!offer.is_object()) {
            return " no JSON: " + text;
        }
        const std::string version = offer.value("version", "");
        return " " + (version.empty() ? "none" : version) + " status " +
               std::to_string(offer.value("status", -1));
    }

    void addProgress(const std::string& text) {
        const auto percent = std::strtol(text.c_str(), nullptr, 10);
        isRising = isRising && std::to_string(percent) == text && percent > last;
        last = percent;
        inProgress = true;
    }

    void endProgress() {
        if (inProgress) {
            words.push_back(std::to_string(NC::eventDownloadProgress) + " to " +
                            std::to_string(last) + (isRising ? "" : ", not rising"));
        }
        inProgress = false;
        isRising = true;
        last = 0;
    }

    std::vector<std::string> words;
    long last = 0;
    bool inProgress = false;
    bool isRising = true;
};

void compareEvents(Comparison& comparison) {
    EventWords words;
    for (const Json& event : comparison.facts.events) {
        const auto note = packageNote(event);
        if (note && note->isEvent()) {
            words.add(*note);
        }
    }
    compareLists(comparison, "events", textsOf(comparison.expect, "events"), words.take());
}

void compareCount(Comparison& comparison, const char* member, std::size_t got) {
    const Json& expect = comparison.expect;
    if (expect.contains(member) && expect.at(member) != got) {
        comparison.differ(member, expect.at(member).dump(), std::to_string(got));
    }
}

void compareRequests(Comparison& comparison) {
    const UpgradeReport& report = comparison.facts.report.upgrade;
    compareCount(comparison, "packageChecks", report.packageChecks);
    compareCount(comparison, "fileChecks", report.fileChecks);
    std::size_t packages = 0;
    std::vector<std::string> files;
    for (const std::string& fileId : report.downloads) {
        const auto name = comparison.upgrade.names.find(fileId);
        if (name == comparison.upgrade.names.end()) {
            files.push_back(fileId);
        } else if (name->second == "package") {
            ++packages;
        } else {
            files.push_back(name->second);
        }
    }
    const std::size_t expected = comparison.expect.value("packageDownloads", std::size_t{0});
    if (packages != expected) {
        comparison.differ("packageDownloads", std::to_string(expected), std::to_string(packages));
    }
    compareLists(comparison, "fileDownloads", textsOf(comparison.expect, "fileDownloads"), files);
}

/// Programs that come at their own moment: how often, where the scenario tells it.
void compareBackground(Comparison& comparison) {
    const Json counts = comparison.expect.value("background", Json::object());
    for (const auto& [program, count] : counts.items()) {
        const auto& events = comparison.facts.events;
        const auto got =
            std::count_if(events.begin(), events.end(), [&text = program](const Json& event) {
                return isKind(event, "process") && programText(event) == text;
            });
        if (count != got) {
            comparison.differ("starts of " + program, count.dump(), std::to_string(got));
        }
    }
}

} // namespace

void compareUpgrade(Comparison& comparison) {
    compareEvents(comparison);
    compareRequests(comparison);
    compareBackground(comparison);
}

void compareContents(Comparison& comparison) {
    const Json contents = comparison.expect.value("contents", Json::object());
    for (const auto& [path, md5] : contents.items()) {
        const FileState* file = comparison.now.fileAt(path);
        if (file == nullptr || file->md5 != md5) {
            comparison.differ("content of " + path, md5.get<std::string>(),
                              file == nullptr ? "no file" : file->md5);
        }
    }
    const Json versions = comparison.expect.value("fileVersions", Json::object());
    for (const auto& [path, version] : versions.items()) {
        const std::string got = comparison.now.versionAt(path).value_or("no file");
        if (got != version) {
            comparison.differ("version of " + path, version.get<std::string>(), got);
        }
    }
}

} // namespace sandbox
