#include "crash/evidence.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "host/settings.h"

namespace crash {

namespace {

constexpr const char* listName = "filelist.xml";

/// The judgement of one trial, a subject at a time.
class Judge {
public:
    explicit Judge(const Trial& given) : trial(given) {}

    std::vector<Finding> judge() {
        lookAtTheBreak();
        for (const Target& target : trial.packet.targets) {
            lookAtTarget(target);
            lookAtEntry(target);
            lookAtVersion(target);
            lookAtProgram(target);
        }
        lookAtPacketVersions();
        lookAtLists();
        lookAtOtherFiles();
        return findings;
    }

private:
    void tell(const std::string& what, std::optional<Loss> loss) {
        findings.push_back({what, loss});
    }

    /// What must hold at every moment: the old bytes, the new ones, or the old ones aside.
    void lookAtTheBreak() {
        for (const Target& target : trial.packet.targets) {
            const std::string bytes = bytesAt(trial.broken, target.path);
            if (bytes == target.before || bytes == target.after ||
                (bytes.empty() && isInTemp(trial.broken, target.before))) {
                continue;
            }
            std::optional<Loss> loss;
            if (isPowerLoss(trial) && isZero(bytes)) {
                loss = Loss::notForced;
            } else if (trial.disturbance == Disturbance::otherHost && bytes.empty() &&
                       isInTemp(trial.broken, target.after)) {
                loss = Loss::twoHosts;
            } else if (bytes.empty() && isToStay(trial, target) && hasWaited(trial, target) &&
                       bytesAt(trial.broken, "update\\" + hashOf(trial, target)) == target.before) {
                loss = Loss::takenBackTooFar;
            }
            tell(target.path + " holds neither the old nor the new bytes at the break", loss);
        }
        if (!damagedLists(trial.broken.stored).empty()) {
            tell("a stored list is no JSON", trial.disturbance == Disturbance::losesOpen &&
                                                     trial.step.operation == Operation::storeSetting
                                                 ? std::optional(Loss::settingCut)
                                                 : std::nullopt);
        }
        if (!trial.broken.fileList) {
            const bool isInIt = trial.step.what.find(listName) != std::string::npos;
            tell("filelist.xml cannot be read",
                 isInIt || isPowerLoss(trial) ? std::optional(Loss::fileListCut) : std::nullopt);
        }
        for (const Session& session : trial.sessions) {
            if (session.end == End::other ||
                (session.end == End::exception && damagedLists(trial.broken.stored).empty())) {
                tell("the host ended in an unforeseen way", std::nullopt);
            }
        }
    }

    void lookAtTarget(const Target& target) {
        const std::string bytes = bytesAt(trial.end, target.path);
        if (bytes == bytesAt(trial.wanted, target.path) ||
            (isToStay(trial, target) && bytes == target.before)) {
            return;
        }
        const char* const how = bytes.empty()            ? " is missing"
                                : bytes == target.before ? " is the old one"
                                : bytes == target.after  ? " is the new one"
                                                         : " holds other bytes";
        tell(target.path + how + " in the end", lossOf(trial, target, bytes));
        different.insert(target.path);
    }

    void lookAtEntry(const Target& target) {
        if (!trial.end.fileList || different.count(target.path) > 0) {
            return; // told above
        }
        const std::string stored = entryIn(trial.end, target);
        const std::string wanted = entryIn(trial.wanted, target);
        if (stored == wanted) {
            return;
        }
        const auto withoutSize = [](const std::string& entry) {
            return entry.substr(0, entry.rfind(' '));
        };
        std::optional<Loss> loss;
        if (hasWaited(trial, target) && withoutSize(stored) == withoutSize(wanted)) {
            loss = Loss::sizeOfBefore;
        } else if (isHandled(trial.broken, target) && stored == entryIn(trial.broken, target)) {
            loss = Loss::unrecorded;
        }
        tell(target.path + " has \"" + stored + "\" in filelist.xml", loss);
    }

    /// One that carries its own version may have it in the store as well; it must be true.
    void lookAtVersion(const Target& target) {
        const std::string stored = versionIn(trial.end, target.path);
        const bool isTrue = stored == newVersion && bytesAt(trial.end, target.path) == target.after;
        if (stored == versionIn(trial.wanted, target.path) || isTrue ||
            different.count(target.path) > 0) {
            return;
        }
        const bool wasLeftSo =
            wasOnItsWay(trial, target) && stored == versionIn(trial.broken, target.path);
        tell(target.path + " has version \"" + stored + "\" in the store",
             wasLeftSo ? std::optional(Loss::unrecorded) : std::nullopt);
    }

    void lookAtProgram(const Target& target) {
        const auto& wanted = trial.wantedPrograms;
        if (target.program.empty() ||
            std::count(wanted.begin(), wanted.end(), target.program) == 0) {
            return;
        }
        for (const Session& session : trial.sessions) {
            if (std::count(session.programs.begin(), session.programs.end(), target.program) > 0) {
                return;
            }
        }
        std::optional<Loss> loss;
        if (wasOnItsWay(trial, target)) {
            loss = Loss::unrecorded;
        } else if (isUndoneByOther(trial, target, bytesAt(trial.end, target.path))) {
            loss = Loss::twoHosts;
        }
        tell(target.program + " was never started", loss);
    }

    void lookAtPacketVersions() {
        for (const char* key : {versionKey, virusLibKey}) {
            const std::string stored = versionIn(trial.end, key);
            if (stored != versionIn(trial.wanted, key)) {
                tell(std::string(key) + " is \"" + stored + "\" in the store",
                     isAnyHandled(trial) ? std::optional(Loss::unrecorded) : std::nullopt);
            }
        }
    }

    /// The lists need not be the same texts; they must be true.
    void lookAtLists() {
        if (!damagedLists(trial.end.stored).empty()) {
            tell("a stored list is no JSON in the end", std::nullopt);
            return;
        }
        const std::string padding = textIn(trial.end, settingkeys::kelvarPaddingFileList);
        const nlohmann::json waiting =
            padding.empty() ? nlohmann::json::object() : nlohmann::json::parse(padding);
        for (const auto& [path, name] : waiting.items()) {
            std::string file = name.get<std::string>();
            file.erase(0, file.find_first_not_of('\\')); // of a member of a cabinet
            if (trial.end.files.count("update\\" + file) > 0 && !isScheduled(trial.end, path)) {
                std::optional<Loss> loss;
                if (isTakenAway(trial, file)) {
                    loss = Loss::scheduledTwice;
                } else if (isRefusedBySystem(trial, path)) {
                    loss = Loss::notScheduled;
                } else if (isPowerLoss(trial) && isZero(bytesAt(trial.end, path))) {
                    loss = Loss::notForced; // it was fetched again for the next run
                }
                tell(path + " is listed as waiting and nothing is to replace it", loss);
            }
        }
        if (!trial.end.delayed.empty()) {
            tell("the system still keeps: " + trial.end.delayed.front(), std::nullopt);
        }
    }

    void lookAtOtherFiles() {
        for (const auto& [path, bytes] : trial.end.files) {
            if (trial.wanted.files.count(path) == 0 && !isTarget(trial, path)) {
                tell(path + " stays",
                     path.starts_with("update\\") ? std::optional(Loss::leftover) : std::nullopt);
            }
        }
        for (const auto& [path, bytes] : trial.wanted.files) {
            if (!isTarget(trial, path) && !path.starts_with("update\\") &&
                bytesAt(trial.end, path) != bytes) {
                tell(path + " is not as it was", std::nullopt);
            }
        }
    }

    const Trial& trial;
    std::vector<Finding> findings;
    std::set<std::string> different; ///< targets that are told of already
};

} // namespace

std::vector<Finding> judge(const Trial& trial) {
    return Judge(trial).judge();
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
        const auto found = stored.texts.find(key);
        if (found != stored.texts.end() && !found->second.empty() &&
            !nlohmann::json::accept(found->second)) {
            damaged.emplace_back(key);
        }
    }
    return damaged;
}

} // namespace crash
