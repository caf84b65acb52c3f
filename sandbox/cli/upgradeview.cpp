#include "sandbox/cli/upgradeview.h"

#include <array>

namespace sandbox {
namespace {

constexpr const char* packageSection = "Package";
constexpr const char* fileSection = "File channel";
constexpr const char* setupFile = "update\\setup.exe";
constexpr std::size_t columnWidth = 13;

constexpr std::array<const char*, 6> commandWords{"",        "check",  "download",
                                                  "install", "ignore", "cancel"};
/// By the record's status.
constexpr std::array<const char*, 7> statusWords{"nothing known",
                                                 "to be fetched",
                                                 "being fetched",
                                                 "fetched",
                                                 "setup was started",
                                                 "installed",
                                                 "fetched, but not the announced bytes"};

std::string stateText(int status) {
    const auto at = static_cast<std::size_t>(status);
    return at < statusWords.size() ? statusWords[at] : "status " + std::to_string(status);
}

} // namespace

UpgradeView::UpgradeView(Sections& lines, const BuiltUpgrade& upgrade)
    : sections(lines), built(upgrade) {}

bool UpgradeView::platform(const PlatformEvent& event) {
    switch (event.kind) {
    case PlatformEvent::Kind::packageCheck:
        if (built.offer.package) {
            sections.rowAside(packageSection, Mark::good, {"asked", event.detail}, {columnWidth});
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
        sections.rowAside(packageSection, event.value("started", false) ? Mark::starts : Mark::no,
                          {"started", programText(event)}, {columnWidth});
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
    // Where nobody is told, only the log says that the check has found the new version.
    if (text.rfind("update plugin, pkg, task check, not logined or ui upgrade.", 0) == 0) {
        sections.rowAside(packageSection, Mark::good, {"installed", "as the client's version says"},
                          {columnWidth});
    }
}

void UpgradeView::note(const PackageNote& told) {
    if (told.code == 102) {
        percent = told.text;
        sections.progressAside(packageSection, "package  " + percent + " %",
                               std::strtod(percent.c_str(), nullptr) / 100);
        return;
    }
    endProgress();
    if (told.code == 100) {
        offered(told.text);
    } else if (told.code == 104) {
        sections.rowAside(packageSection, Mark::starts, {"install", "has begun"}, {columnWidth});
    } else if (told.code == 103) {
        sections.rowAside(packageSection, Mark::none, {"download", "has ended"}, {columnWidth});
    } else if (told.code > 0 && told.code < static_cast<int>(commandWords.size())) {
        sections.rowAside(packageSection, Mark::starts,
                          {"user", commandWords[static_cast<std::size_t>(told.code)]},
                          {columnWidth});
    }
}

void UpgradeView::offered(const std::string& record) {
    const auto offer = nlohmann::json::parse(record, nullptr, false);
    if (!offer.is_object()) {
        return;
    }
    const std::string version = offer.value("version", "");
    sections.rowAside(
        packageSection, Mark::good,
        {"offer", version.empty() ? "none" : version + ", " + stateText(offer.value("status", 0))},
        {columnWidth});
}

void UpgradeView::endProgress() {
    if (!percent.empty()) {
        sections.rowAside(packageSection, Mark::good, {"download", percent + " %"}, {columnWidth});
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
