#include "sandbox/cli/upgradeview.h"

#include <cstdlib>

#include "host/notificationcenter.h"
#include "sandbox/cli/uicommands.h"
#include "sandbox/cli/upgraderecord.h"

namespace sandbox {
namespace {

constexpr const char* packageSection = "Package";
constexpr const char* fileSection = "File channel";
constexpr const char* setupFile = "update\\setup.exe";
constexpr std::size_t columnWidth = 13;

} // namespace

UpgradeView::UpgradeView(Sections& lines, const BuiltUpgrade& upgrade)
    : sections(lines), built(upgrade) {}

bool UpgradeView::platform(const PlatformEvent& event) {
    switch (event.kind) {
    case PlatformEvent::Kind::packageCheck:
        if (built.offer.package) {
            tell(Mark::good, "asked", event.detail);
        }
        return true;
    case PlatformEvent::Kind::fileCheck:
        if (!event.detail.empty()) {
            sections.rowAside(fileSection, Mark::good, {"asked", event.detail}, {columnWidth});
        }
        return true;
    case PlatformEvent::Kind::transfer:
        if (built.names.count(event.text) == 0) {
            return false;
        }
        transfer(event);
        return true;
    default:
        return false;
    }
}

void UpgradeView::transfer(const PlatformEvent& event) {
    const std::string& name = built.names.at(event.text);
    if (built.offer.package && event.text == built.offer.package->fileId) {
        return; // told by the client itself
    }
    transfers[name] = event;
    if (event.bytes == event.total) {
        sections.rowAside(fileSection, Mark::good, {name, sizeText(event.total)}, {columnWidth});
        transfers.erase(name);
    }
}

bool UpgradeView::host(const nlohmann::json& event) {
    if (const auto told = packageNote(event)) {
        note(*told);
        return true;
    }
    if (isKind(event, "process") && event.value("file", "") == setupFile) {
        endProgress();
        tell(event.value("started", false) ? Mark::starts : Mark::no, "started",
             programText(event));
        return true;
    }
    if (isKind(event, "event")) {
        const auto fields = event.value("fields", std::vector<std::string>());
        std::string text;
        for (const std::string& field : fields) {
            text += (field.empty() ? "-" : field) + "  ";
        }
        sections.rowAside("Statistic event", Mark::starts, {text});
        return true;
    }
    return false;
}

void UpgradeView::log(const std::string& text) {
    if (isConfirmedSilently(text)) {
        tell(Mark::good, "installed", "as the client's version says");
    }
}

void UpgradeView::note(const PackageNote& told) {
    if (told.code == NC::eventDownloadProgress) {
        percent = told.text;
        sections.progressAside(packageSection, "package  " + percent + " %",
                               std::strtod(percent.c_str(), nullptr) / 100);
        return;
    }
    endProgress();
    switch (told.code) {
    case NC::eventUpgradeInfo:
        return offered(recordOf(told.text));
    case NC::eventDownloadFinish:
        return tell(Mark::none, "download", "has ended");
    case NC::eventInstallFinish:
        return tell(Mark::starts, "install", "has begun");
    default:
        if (const std::string word = wordOfCommand(told.code); !word.empty()) {
            tell(Mark::starts, "user", word);
        }
    }
}

void UpgradeView::offered(const nlohmann::json& record) {
    if (record.empty()) {
        return;
    }
    const std::string version = record.value("version", "");
    tell(Mark::good, "offer", version.empty() ? "none" : version + ": " + stateText(record));
}

void UpgradeView::tell(Mark mark, const char* what, const std::string& text) {
    sections.rowAside(packageSection, mark, {what, text}, {columnWidth});
}

void UpgradeView::endProgress() {
    if (!percent.empty()) {
        tell(Mark::good, "download", percent + " %");
        percent.clear();
    }
}

void UpgradeView::end() {
    endProgress();
    for (const auto& [name, event] : transfers) {
        sections.rowAside(fileSection, Mark::fault,
                          {name, "broken off at " + sizeText(event.bytes)}, {columnWidth});
    }
}

} // namespace sandbox
