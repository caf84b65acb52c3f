#include "sandbox/cli/uiview.h"

#include <array>
#include <cstdlib>

#include "host/notificationcenter.h"
#include "host/settings.h"
#include "sandbox/cli/uicommands.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr std::size_t wordWidth = 10;

/// By the record's status.
constexpr std::array<const char*, 7> states{"nothing is known of it",
                                            "can be downloaded",
                                            "is being downloaded",
                                            "is on disk and can be installed",
                                            "its setup was started",
                                            "is installed",
                                            "what is on disk is not the announced package"};

std::string stateOf(const Json& record) {
    const auto status = record.value("status", std::size_t{0});
    return status < states.size() ? states[status] : "status " + std::to_string(status);
}

Json objectOf(const std::string& text) {
    Json record = Json::parse(text, nullptr, false);
    return record.is_object() ? record : Json::object();
}

} // namespace

Json storedRecord(const Folders& folders) {
    const Json settings = readJson(folders.settings()).value_or(Json::object());
    return objectOf(settings.value(settingkeys::upgrade, ""));
}

int storedStatus(const Folders& folders) {
    return storedRecord(folders).value("status", 0);
}

void UiView::offer(const Json& record) {
    const std::string version = record.value("version", "");
    if (version.empty() || !record.value("needUpgrade", false)) {
        console.row(Mark::no, {"offer", "none"}, {wordWidth});
        return;
    }
    console.row(Mark::good,
                {"offer", version + ", " + sizeText(record.value("fileSize", std::uint64_t{0})) +
                              (record.value("isForce", false) ? ", urgent" : "") + ": " +
                              stateOf(record)},
                {wordWidth});
    if (const std::string notes = record.value("content", ""); !notes.empty()) {
        console.row(Mark::none, {"notes", notes}, {wordWidth});
    }
}

void UiView::note(const PackageNote& note) {
    switch (note.code) {
    case NC::eventUpgradeInfo:
        return offer(objectOf(note.text));
    case NC::eventDownloadStart:
        percent.clear();
        return console.row(Mark::starts, {"download", "begins"}, {wordWidth});
    case NC::eventDownloadProgress:
        return progress(note.text);
    case NC::eventDownloadFinish:
        return finish();
    case NC::eventInstallFinish:
        return console.row(Mark::good, {"install", "the setup was started"}, {wordWidth});
    default:
        if (const std::string word = wordOfCommand(note.code); !word.empty()) {
            console.row(Mark::starts, {"you", word}, {wordWidth});
        }
    }
}

void UiView::progress(const std::string& text) {
    percent = text;
    console.progress("download    " + text + " %", std::strtod(text.c_str(), nullptr) / 100);
}

/// The event is the same after success and failure; the stored record tells.
void UiView::finish() {
    const Json record = storedRecord(folders);
    const bool isThere = record.value("status", 0) == packageOnDisk;
    console.row(isThere ? Mark::good : Mark::fault,
                {"download", "has ended" + (percent.empty() ? "" : " at " + percent + " %") + ": " +
                                 (record.empty() ? "nothing is offered" : stateOf(record))},
                {wordWidth});
}

} // namespace sandbox
