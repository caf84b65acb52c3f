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

const char* tryReason(Material::Try tried) {
    switch (tried) {
    case Material::Try::badName:
        return "hash is no plain name";
    case Material::Try::badPath:
        return "target outside the client";
    case Material::Try::isFolder:
        return "target is a folder";
    case Material::Try::cabinet:
        return "cabinet does not expand";
    case Material::Try::missing:
        return "file is missing in its cabinet";
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

void decideMoved(const KelvarRun& run, Material& row) {
    const bool isLastWord = !hasEnded(run) && row.moveLine == run.lastLine;
    if (!row.failedBy.empty()) {
        row.refuse("cannot be put in place");
    } else if (!row.scheduleError.empty()) {
        row.refuse("cannot be left to the restart");
    } else if (row.isScheduled) {
        row.decision = "waiting";
    } else if (!row.lockedBy.empty() || isLastWord) {
        row.decision = "untold";
        row.notes.emplace_back("the log ends in its move");
    } else {
        row.decision = "placed";
    }
}

void decideUntried(const KelvarRun& run, Material& row) {
    const bool isLastWord =
        !hasEnded(run) && row.fetchLine != 0 && row.fetchLine + 1 >= run.lastLine;
    if (row.fetch == Material::Fetch::badName) {
        row.refuse("hash is no plain name");
    } else if (row.fetch == Material::Fetch::failed) {
        row.refuse("download failed");
    } else if (hasEnded(run)) {
        row.decision = "left";
    } else {
        row.decision = "untold";
        row.notes.emplace_back(isLastWord ? "the log ends in its transfer"
                                          : "the log ends before it says more");
    }
}

void decideRow(const KelvarRun& run, Material& row) {
    if (row.filter != Material::Filter::passed) {
        row.refuse(filterReason(row.filter));
    } else if (row.tried == Material::Try::moved) {
        decideMoved(run, row);
    } else if (row.tried != Material::Try::none) {
        row.refuse(tryReason(row.tried));
    } else {
        decideUntried(run, row);
    }
}

bool anyRow(const KelvarRun& run, const char* decision) {
    return std::any_of(run.materials.begin(), run.materials.end(),
                       [&](const Material& row) { return row.decision == decision; });
}

std::string failureWords(const KelvarRun& run) {
    const auto hasFailed = [](const Material& row) {
        return row.fetch == Material::Fetch::failed || row.fetch == Material::Fetch::badName;
    };
    if (std::any_of(run.materials.begin(), run.materials.end(), hasFailed)) {
        return "nothing was moved: not every file arrived";
    }
    const bool hadRows = std::any_of(run.materials.begin(), run.materials.end(),
                                     [](const Material& row) { return row.isListed; });
    if (!hadRows && run.tried.empty() && run.movesDone) {
        return "nothing to place: the client is current, or the filters dropped every material";
    }
    return run.movesDone ? "nothing was placed: every file was refused"
                         : "it failed; the log does not tell why";
}

std::string endOf(const KelvarRun& run) {
    if (run.success) {
        return *run.success ? anyRow(run, "waiting") ? "files were placed or left to the restart"
                                                     : "files were placed"
                            : failureWords(run);
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
