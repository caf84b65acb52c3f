#include "crash/judgements.h"

#include <algorithm>
#include <set>

#include "crash/explain.h"

namespace crash {

namespace {

/// The restart may bring what has waited since an earlier run, where nothing newer was there.
bool isSafe(const Trial& trial, const Snapshot& at, const Target& target) {
    const Bytes bytes = bytesAt(at, target.path);
    return bytes == bytesBefore(target) || bytes == target.after ||
           (!bytes && isInTemp(at, target.before)) ||
           (!isHandled(trial.packet, trial.broken, target) &&
            isOfEarlierRun(trial.packet, target, bytes));
}

/// A damaged list ends the one session that reads it; then an operator clears it.
bool mayEndByException(const Trial& trial, const Session& session) {
    return trial.sessions.size() > 1 && &session == &trial.sessions[1] &&
           !damagedLists(trial.broken.stored).empty();
}

void lookAtTarget(const Trial& trial, const Target& target, std::vector<Finding>& findings) {
    std::set<Bytes> told;
    const auto look = [&](const Snapshot& at, const std::string& when) {
        if (!isSafe(trial, at, target) && told.insert(bytesAt(at, target.path)).second) {
            findings.push_back({target.path + " holds neither the old nor the new bytes " + when,
                                whyUnsafe(trial, at, target)});
        }
    };
    look(trial.broken, "at the break");
    for (const Moment& moment : trial.later) {
        look(moment.stands, "with run " + std::to_string(moment.run));
    }
}

void lookAtLists(const Trial& trial, std::vector<Finding>& findings) {
    if (!damagedLists(trial.broken.stored).empty()) {
        const bool isCut = trial.disturbance == Disturbance::losesOpen && died(trial) &&
                           trial.step.operation == Operation::storeSetting;
        findings.push_back(
            {"a stored list is no JSON", isCut ? Reason(Loss::settingCut) : std::nullopt});
    }
    if (!trial.broken.fileList) {
        findings.push_back({"filelist.xml cannot be read", whyNoFileList(trial)});
    } else if (!trial.end.fileList) {
        findings.push_back({"filelist.xml cannot be read in the end", std::nullopt});
    }
}

} // namespace

void judgeDisturbance(const Trial& trial, std::vector<Finding>& findings) {
    const Session& first = trial.sessions.front();
    const std::size_t came =
        trial.disturbance == Disturbance::storeIsGone ? first.storeLookups : first.steps.size();
    if (came < trial.at) {
        findings.push_back({"the run never came to what was to be disturbed", std::nullopt});
    }
    if (died(trial) != isDeath(trial.disturbance)) {
        findings.push_back({died(trial) ? "the host ended at a step" : "the host did not end there",
                            std::nullopt});
    }
    for (const Session& session : trial.sessions) {
        const bool isGood = session.end == End::itself ||
                            (session.end == End::asPlanned && &session == &first) ||
                            (session.end == End::exception && mayEndByException(trial, session));
        if (!isGood) {
            findings.push_back({"the host ended in an unforeseen way", std::nullopt});
        }
    }
}

void judgeMoments(const Trial& trial, std::vector<Finding>& findings) {
    for (const Target& target : trial.packet.targets) {
        lookAtTarget(trial, target, findings);
    }
    lookAtLists(trial, findings);
}

void judgeRest(const Trial& trial, std::vector<Finding>& findings) {
    const auto tell = [&](const std::string& what) {
        findings.push_back({what + " changed with one more run", std::nullopt});
    };
    std::set<std::string> paths;
    for (const Snapshot* const at : {&trial.end, &trial.again}) {
        for (const auto& [path, bytes] : at->files) {
            paths.insert(path);
        }
    }
    for (const std::string& path : paths) {
        if (bytesAt(trial.end, path) != bytesAt(trial.again, path)) {
            tell(path);
        }
    }
    if (trial.end.fileList != trial.again.fileList) {
        tell("filelist.xml");
    }
    if (trial.end.stored.versions != trial.again.stored.versions) {
        tell("the version store");
    }
    if (trial.end.stored.texts != trial.again.stored.texts) {
        tell("a stored list");
    }
    if (trial.end.delayed != trial.again.delayed) {
        tell("what the system keeps");
    }
    for (const std::string& failure : trial.notMoved) {
        findings.push_back({"the restart has not done " + failure, std::nullopt});
    }
}

} // namespace crash
