#include "sandbox/cli/runview.h"

#include <algorithm>

#include "sandbox/cli/notes.h"

namespace sandbox {
namespace {

constexpr std::size_t detailLimit = 60;
constexpr std::size_t questionWidth = 20;

bool begins(const std::string& text, const char* with) {
    return text.rfind(with, 0) == 0;
}

/// Where a row's line belongs.
const char* sectionOf(const Row& row) {
    if (begins(row.reason, "for another") || begins(row.reason, "already")) {
        return "Not for this client";
    }
    const bool ofDownload = begins(row.reason, "download") || begins(row.reason, "hash");
    return ofDownload ? "Downloads" : "Files";
}

Mark markOf(RowState state) {
    switch (state) {
    case RowState::placed:
        return Mark::good;
    case RowState::waiting:
        return Mark::waits;
    default:
        return Mark::no;
    }
}

std::string wordsOf(const Row& row) {
    if (row.state == RowState::waiting) {
        return "waits for the restart";
    }
    return wordOf(row.state) + (row.reason.empty() ? "" : ": " + row.reason);
}

} // namespace

RunView::RunView(Console& output, const std::vector<const BuiltMaterial*>& offered,
                 const BuiltUpgrade& built, std::vector<std::string> programs)
    : console(output), sections(output), upgrade(sections, built),
      background(std::move(programs)), widths{0, 0}, detailed(offered.size() <= detailLimit) {
    for (const BuiltMaterial* material : offered) {
        materials[material->offered.fileId] = material;
        widths[0] = std::max(widths[0], material->plan.name.size());
        widths[1] = std::max(widths[1], material->path.size());
    }
}

const BuiltMaterial* RunView::byFileId(const std::string& fileId) const {
    const auto found = materials.find(fileId);
    return found == materials.end() ? nullptr : found->second;
}

void RunView::section(const std::string& title) {
    if (!sections.isIn(title)) {
        finishTransfer();
        sections.heading(title);
    }
}

void RunView::endRun() {
    finishTransfer();
    sections.endRun();
}

void RunView::platform(const PlatformEvent& event) {
    if (upgrade.platform(event)) {
        return;
    }
    switch (event.kind) {
    case PlatformEvent::Kind::question:
        beginRun();
        section("Conversation");
        console.row(Mark::good, {event.text, event.detail}, {questionWidth});
        break;
    case PlatformEvent::Kind::transfer:
        transfer(event);
        break;
    default:
        console.row(Mark::fault, {event.text}, {});
        break;
    }
}

void RunView::transfer(const PlatformEvent& event) {
    if (detailed) {
        section("Downloads");
    }
    if (transferring != event.text || event.bytes == 0) {
        finishTransfer();
        transferring = event.text;
        ++transfers;
    }
    transferredBytes += event.bytes > sent ? event.bytes - sent : 0;
    sent = event.bytes;
    const BuiltMaterial* material = byFileId(event.text);
    if (event.bytes == event.total) {
        finishTransfer();
    } else if (material != nullptr && detailed) {
        console.progress(material->plan.name + "  " + material->path,
                         static_cast<double>(event.bytes) / static_cast<double>(event.total));
    } else if (!detailed) {
        console.progress("files fetched: " + std::to_string(transfers),
                         static_cast<double>(transfers) / static_cast<double>(materials.size()));
    }
}

void RunView::finishTransfer() {
    const BuiltMaterial* material = byFileId(transferring);
    if (material != nullptr && detailed) {
        const bool whole = sent == material->storedSize;
        console.row(whole ? Mark::good : Mark::fault,
                    {material->plan.name, material->path,
                     whole ? sizeText(sent) : "broken off at " + sizeText(sent)},
                    widths);
    }
    transferring.clear();
    sent = 0;
}

void RunView::row(const Row& row) {
    ++settled[row.state];
    if (detailed) {
        finishTransfer(); // a row that failed in its transfer comes behind it
        section(sectionOf(row));
        console.row(markOf(row.state), {row.material->plan.name, row.material->path, wordsOf(row)},
                    widths);
    }
}

void RunView::program(const nlohmann::json& event) {
    const bool started = event.value("started", false);
    const std::string text = programText(event);
    const bool isOthers = std::find(background.begin(), background.end(), text) != background.end();
    const Mark mark = started ? Mark::starts : Mark::no;
    const std::vector<std::string> cells{text, started ? "" : "(no such program here)"};
    if (isOthers) {
        sections.rowAside("Other channel", mark, cells);
    } else {
        section("Programs");
        console.row(mark, cells, {});
    }
}

void RunView::host(const nlohmann::json& event) {
    if (upgrade.host(event)) {
        return;
    }
    if (isKind(event, "process")) {
        program(event);
    } else if (isKind(event, "notification")) {
        section("Notification");
        const std::string version = notifiedVersion(event);
        console.row(Mark::starts,
                    {"type " + std::to_string(event.value("type", 0)) +
                     (version.empty() ? "" : ", version " + version)},
                    {});
    } else if (isKind(event, "failure")) {
        console.row(Mark::fault, {event.value("where", "") + ": " + event.value("text", "")}, {});
    }
}

void RunView::end() {
    endRun();
    upgrade.end();
    if (!detailed) {
        section("Sums");
        console.line("  " + counted(transfers, "download") + ", " + sizeText(transferredBytes));
        for (const auto& [state, count] : settled) {
            console.line("  " + counted(count, "file") + " " + wordOf(state));
        }
    }
}

} // namespace sandbox
