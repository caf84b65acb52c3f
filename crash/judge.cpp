#include "crash/judge.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "crash/evidence.h"
#include "crash/judgements.h"
#include "host/settings.h"

namespace crash {

namespace {

bool isWhole(const Trial& trial, const Snapshot& at) {
    const auto& targets = trial.packet.targets;
    return std::all_of(targets.begin(), targets.end(), [&](const Target& target) {
        return bytesAt(at, target.path) == bytesAt(trial.wanted, target.path);
    });
}

} // namespace

std::vector<Finding> judge(const Trial& trial) {
    std::vector<Finding> findings;
    judgeDisturbance(trial, findings);
    judgeMoments(trial, findings);
    judgeEnd(trial, findings);
    judgeRest(trial, findings);
    const auto runs = runsUntilWhole(trial);
    if (outcomeOf(findings) == Outcome::recovered && runs > 1U) {
        findings.push_back({"the targets took " + std::to_string(*runs) + " runs", std::nullopt});
    }
    return findings;
}

Outcome outcomeOf(const std::vector<Finding>& findings) {
    Outcome outcome = Outcome::recovered;
    for (const Finding& finding : findings) {
        outcome = std::max(outcome, !finding.loss                          ? Outcome::fault
                                    : finding.loss == Loss::leftover       ? Outcome::recovered
                                    : finding.loss == Loss::scheduledTwice ? Outcome::oldKept
                                                                           : Outcome::loss);
    }
    return outcome;
}

std::vector<std::string> damagedLists(const Stored& stored) {
    std::vector<std::string> damaged;
    for (const char* key : {settingkeys::kelvarTempFileList, settingkeys::kelvarPaddingFileList}) {
        const std::string text = textIn(stored, key);
        if (!text.empty() && !nlohmann::json::accept(text)) {
            damaged.emplace_back(key);
        }
    }
    return damaged;
}

std::optional<std::size_t> runsUntilWhole(const Trial& trial) {
    std::optional<std::size_t> runs;
    for (auto moment = trial.later.rbegin(); moment != trial.later.rend(); ++moment) {
        if (!isWhole(trial, moment->stands)) {
            return runs;
        }
        runs = moment->run;
    }
    return isWhole(trial, trial.broken) ? std::optional<std::size_t>(0) : runs;
}

} // namespace crash
