#include "sandbox/report/decision.h"

#include <algorithm>

#include "sandbox/report/groups.h"

namespace sandbox::report {
namespace {

const char* filterReason(Material::Filter filter) {
    switch (filter) {
    case Material::Filter::client:
        return "for another client version";
    case Material::Filter::system:
        return "for another system version";
    default:
        return "already up to date";
    }
}

/// The file of a cabinet is looked for under another name than the cabinet's.
bool isOfCabinet(const Material& row) {
    const std::string& path = row.detail[0];
    return path.substr(path.rfind('\\') + 1) != row.md5;
}

const char* tryReason(const Material& row) {
    switch (row.tried) {
    case Material::Try::badName:
        return "hash is no plain name";
    case Material::Try::badPath:
        return "target outside the client";
    case Material::Try::isFolder:
        return "target is a folder";
    case Material::Try::cabinet:
        return "cabinet does not expand";
    case Material::Try::missing:
        return isOfCabinet(row) ? "file is missing in its cabinet"
                                : "file is missing in the update folder";
    case Material::Try::hash:
        return "content is not the announced one";
    case Material::Try::version:
        return "not newer than what stands";
    default:
        return "the log does not tell why";
    }
}

bool hasEnded(const KelvarRun& run) {
    return run.success.has_value() || !run.endWords.empty();
}

void leaveOpen(Material& row, const char* note) {
    row.decision = "untold";
    row.notes.emplace_back(note);
}

void decideMoved(const KelvarRun& run, Material& row) {
    const bool isLastWord = !hasEnded(run) && row.moveLine == run.lastLine;
    if (!row.failedBy.empty()) {
        row.refuse("cannot be put in place");
    } else if (!row.scheduleError.empty()) {
        row.refuse("cannot be left to the restart");
    } else if (isLastWord || (!row.lockedBy.empty() && !row.isScheduled)) {
        row.isOpen = true;
        leaveOpen(row, "no line tells how its move ended");
    } else {
        row.decision = row.isScheduled ? "waiting" : "placed";
    }
}

void decideUntried(const KelvarRun& run, Material& row) {
    const bool cameToRows = run.cameToDownload || run.movesDone || !run.tried.empty();
    if (row.fetch == Material::Fetch::badName) {
        row.refuse("hash is no plain name");
    } else if (row.fetch == Material::Fetch::failed) {
        row.refuse("download failed");
    } else if (hasEnded(run) && !(row.md5.empty() && cameToRows)) {
        row.decision = "left";
    } else {
        row.isOpen = !hasEnded(run) && row.fetch == Material::Fetch::fetched &&
                     row.fetchLine == run.lastLine;
        leaveOpen(row, row.isOpen ? "no line tells how its transfer ended"
                                  : "no line tells what became of it");
    }
}

void decideRow(const KelvarRun& run, Material& row) {
    if (row.filter != Material::Filter::passed) {
        row.refuse(filterReason(row.filter));
    } else if (row.tried == Material::Try::moved) {
        decideMoved(run, row);
    } else if (row.tried != Material::Try::none) {
        row.refuse(tryReason(row));
    } else {
        decideUntried(run, row);
    }
}

bool anyRow(const KelvarRun& run, const char* decision) {
    return std::any_of(run.materials.begin(), run.materials.end(),
                       [&](const Material& row) { return row.decision == decision; });
}

/// Why there was nothing to move: a current client is asked about nothing or has it all.
std::string nothingWords(const KelvarRun& run) {
    const bool wasDropped =
        std::any_of(run.materials.begin(), run.materials.end(),
                    [](const Material& row) { return row.filter != Material::Filter::passed; });
    if (wasDropped) {
        return "nothing to place: the filters dropped every material";
    }
    return run.asked && run.askedFor.empty()
               ? "nothing to place: no material was on offer, or the offer could not be read"
               : "nothing to place; the log does not tell why";
}

std::string failedMovesWords(const KelvarRun& run) {
    const bool hadRows = std::any_of(run.materials.begin(), run.materials.end(),
                                     [](const Material& row) { return row.isListed; });
    if (run.rows ? *run.rows == 0 : !hadRows && run.tried.empty()) {
        return nothingWords(run);
    }
    const bool stays = anyRow(run, "placed");
    const bool waits = anyRow(run, "waiting");
    if (!stays && !waits) {
        return "nothing was placed: every file was refused";
    }
    return std::string("nothing was placed as it should be: every group failed; ") +
           (stays ? "what could not be taken back stays in place" : "") +
           (stays && waits ? ", and " : "") +
           (waits ? "what was left to the restart before still is" : "");
}

std::string failureWords(const KelvarRun& run) {
    const auto hasFailed = [](const Material& row) {
        return row.fetch == Material::Fetch::failed || row.fetch == Material::Fetch::badName;
    };
    const auto wasFetched = [](const Material& row) {
        return row.fetch != Material::Fetch::none;
    };
    if (std::any_of(run.materials.begin(), run.materials.end(), hasFailed)) {
        return "nothing was moved: not every file arrived";
    }
    if (run.movesDone) {
        return failedMovesWords(run);
    }
    const bool isSilent = run.cameToDownload && !run.rows && run.tried.empty() &&
                          std::none_of(run.materials.begin(), run.materials.end(), wasFetched);
    return isSilent ? "nothing was fetched: it follows that the client has no \"module.libcurl\""
                    : "it failed; the log does not tell why";
}

std::string successWords(const KelvarRun& run) {
    const bool placed = anyRow(run, "placed");
    if (anyRow(run, "waiting")) {
        return placed || anyRow(run, "untold") ? "files were placed or left to the restart"
                                               : "files were left to the restart";
    }
    return placed || !run.tried.empty() ? "files were placed"
                                        : "files were placed or left to the restart";
}

std::string endOf(const KelvarRun& run) {
    if (run.success) {
        return *run.success ? successWords(run) : failureWords(run);
    }
    if (!run.questions.empty() && run.questions.back().outcome == Question::Outcome::untold) {
        return "the log shows no answer to " + run.questions.back().name;
    }
    return "the log does not tell how it ended";
}

} // namespace

void decide(KelvarRun& run) {
    for (Material& row : run.materials) {
        decideRow(run, row);
    }
    settleGroups(run);
    if (run.endWords.empty()) {
        run.endWords = endOf(run);
    }
}

} // namespace sandbox::report
