#include "sandbox/cli/uiview.h"

#include <cstdlib>

#include "host/notificationcenter.h"
#include "sandbox/cli/uicommands.h"
#include "sandbox/cli/upgraderecord.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr std::size_t wordWidth = 10;

} // namespace

void UiView::offer(const Json& record) {
    const std::string version = record.value("version", "");
    if (version.empty() || !record.value("needUpgrade", false)) {
        console.row(Mark::no, {"offer", "none"}, {wordWidth});
        return;
    }
    console.row(Mark::good,
                {"offer", version + ", " + sizeText(record.value("fileSize", std::uint64_t{0})) +
                              (record.value("isForce", false) ? ", urgent" : "") + ": " +
                              stateText(record)},
                {wordWidth});
    if (const std::string notes = record.value("content", ""); !notes.empty()) {
        console.row(Mark::none, {"notes", notes}, {wordWidth});
    }
}

void UiView::note(const PackageNote& note) {
    switch (note.code) {
    case NC::eventUpgradeInfo:
        return offer(recordOf(note.text));
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
    const bool isThere = statusOf(record) == packageOnDisk;
    console.row(isThere ? Mark::good : Mark::fault,
                {"download", "has ended" + (percent.empty() ? "" : " at " + percent + " %") + ": " +
                                 (record.empty() ? "nothing is offered" : stateText(record))},
                {wordWidth});
}

} // namespace sandbox
