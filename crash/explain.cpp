#include "crash/explain.h"

#include <algorithm>

namespace crash {

namespace {

/// Whether an older form that waited may go over the newer one: nobody lived to withdraw it, or
/// the list of waiting files or the very file was out of reach.
bool mayBeOvertaken(const Trial& trial, const Target& target, const Bytes& bytes) {
    const auto& earlier = trial.packet.delayed;
    const bool isWithdrawn = std::any_of(earlier.begin(), earlier.end(), [&](const auto& move) {
        return move.second == target.path && isStep(trial, Operation::remove, move.first);
    });
    return isOfEarlierRun(trial.packet, target, bytes) &&
           (died(trial) || trial.disturbance == Disturbance::storeIsGone ||
            (trial.disturbance == Disturbance::fails && isWithdrawn));
}

/// Whether the disturbance stood between the two moves of the file.
bool isBetweenMoves(const Trial& trial, const Target& target) {
    return !bytesAt(trial.broken, target.path) && isInTemp(trial.broken, target.before) &&
           (died(trial) || hasLogged(trial, "move src to dst error"));
}

/// Whether the session ended in the very write, and half of it is what stands.
bool isCutAt(const Trial& trial, const std::string& key, const std::string& version,
             const std::string& whole) {
    return trial.disturbance == Disturbance::losesOpen && died(trial) &&
           trial.step.operation == Operation::storeVersion && trial.step.what == key &&
           version == halfOf(whole);
}

/// Whether nothing more comes for the key: what it tells of was on its way before.
bool isNeverOfferedAgain(const Trial& trial, const std::string& key) {
    const auto& targets = trial.packet.targets;
    const auto isOver = [&](const Target& target) {
        return wasOnItsWay(trial, target);
    };
    if (key == versionKey) {
        return std::all_of(targets.begin(), targets.end(), isOver);
    }
    return std::any_of(targets.begin(), targets.end(), [&](const Target& target) {
        const sandbox::OfferedMaterial* const material = materialOf(trial.packet, target.path);
        return isOver(target) && (target.path == key || (key == virusLibKey && material &&
                                                         material->moduleId == virusLibModule));
    });
}

std::string entryOf(const Packet& packet, const Target& target, std::size_t size) {
    return std::string(newVersion) + " " + hashOf(packet, target) + " " + std::to_string(size);
}

/// Whether neither the list nor the restart was told of a file that was pushed aside by then.
bool isNobodysAside(const Trial& trial, const std::string& path) {
    constexpr const char* temp = "update\\temp";
    if (!bytesAt(trial.broken, path)) {
        return false;
    }
    return died(trial) || trial.disturbance == Disturbance::fullDisk ||
           (trial.disturbance == Disturbance::fails &&
            (isStep(trial, Operation::moveAtRestart, temp) ||
             isStep(trial, Operation::searchFolder, temp) ||
             isStep(trial, Operation::remove, temp)));
}

/// Whether the old file did not come back behind the new one's leave.
bool isHalfTakenBack(const Trial& trial, const Target& target) {
    return trial.disturbance == Disturbance::fails &&
           isStep(trial, Operation::move, "update\\temp\\") &&
           trial.step.what.ends_with("\\" + target.path) && hasLogged(trial, "rollback 2 error");
}

/// Whether the new file's own leave failed when its group was taken back.
bool isLeftInPlace(const Trial& trial, const Target& target) {
    return trial.disturbance == Disturbance::fails &&
           isStep(trial, Operation::move, "\\" + target.path + " > ") &&
           !isStep(trial, Operation::move, "update\\temp\\") &&
           hasLogged(trial, "rollback 1 error");
}

} // namespace

Reason whyUnsafe(const Trial& trial, const Snapshot& at, const Target& target) {
    const Bytes bytes = bytesAt(at, target.path);
    if (isPowerLoss(trial) && isZero(bytes)) {
        return Loss::notForced;
    }
    if (bytes) {
        return mayBeOvertaken(trial, target, bytes) ? Reason(Loss::overtaken) : std::nullopt;
    }
    if (trial.disturbance == Disturbance::otherHost && isInTemp(trial.broken, target.after)) {
        return Loss::twoHosts;
    }
    const std::string waiting = "update\\" + hashOf(trial.packet, target);
    if (isToStay(trial.packet, target) && hasWaited(trial, target) &&
        bytesAt(at, waiting) == target.before) {
        return Loss::takenBackTooFar;
    }
    if (isHalfTakenBack(trial, target)) {
        return Loss::notTakenBack;
    }
    return isBetweenMoves(trial, target) ? Reason(Loss::betweenMoves) : std::nullopt;
}

Reason whyDifferent(const Trial& trial, const Target& target, const Bytes& bytes) {
    const bool isOld = bytes == bytesBefore(target);
    const bool stays = isToStay(trial.packet, target);
    if (isPowerLoss(trial) && isZero(bytes)) {
        return Loss::notForced;
    }
    if (isOld && isRefusedBySystem(trial, target.path)) {
        return Loss::notScheduled;
    }
    if (isOld && isTakenAway(trial, hashOf(trial.packet, target)) &&
        timesScheduled(trial, target.path) > 1) {
        return Loss::scheduledTwice;
    }
    if (isUndoneByOther(trial, target, bytes)) {
        return Loss::twoHosts;
    }
    if (isHandled(trial.packet, trial.broken, target) && mayBeOvertaken(trial, target, bytes)) {
        return Loss::overtaken;
    }
    if (!bytes && stays && isHalfTakenBack(trial, target)) {
        return Loss::notTakenBack;
    }
    if (!bytes && stays && isBetweenMoves(trial, target)) {
        return Loss::betweenMoves;
    }
    if (bytes == target.after && stays && hasWaited(trial, target)) {
        return Loss::staysScheduled;
    }
    if (bytes == target.after && stays && isHandled(trial.packet, trial.broken, target) &&
        (died(trial) || isLeftInPlace(trial, target))) {
        return Loss::groupTorn;
    }
    return std::nullopt;
}

bool isPossibleEntry(const Packet& packet, const Target& target, const std::string& entry) {
    return entry == formerEntry(target) || entry == entryOf(packet, target, target.after.size()) ||
           entry == entryOf(packet, target, target.before.size()) ||
           entry == entryOf(packet, target, 0);
}

Reason whyEntry(const Trial& trial, const Target& target, const std::string& entry) {
    const bool isNew = entry != formerEntry(target);
    if (isNew && isPossibleEntry(trial.packet, target, entry) && hasWaited(trial, target)) {
        return Loss::sizeOfBefore;
    }
    if (!isNew && wasOnItsWay(trial, target) && entry == entryIn(trial.broken, target.path) &&
        wasKeptFromWriting(trial, fileListName)) {
        return Loss::unrecorded;
    }
    return std::nullopt;
}

Reason whyVersion(const Trial& trial, const std::string& key, const std::string& version) {
    const bool isFormer = version == versionIn(trial.packet.stored, key);
    const std::string whole = key == virusLibKey ? newVirusLibVersion : newVersion;
    const bool wasNeverWritten = isFormer && version == versionIn(trial.broken.stored, key) &&
                                 wasKeptFromWriting(trial, key);
    if (isFormer ? wasNeverWritten && isNeverOfferedAgain(trial, key)
                 : isCutAt(trial, key, version, whole)) {
        return Loss::unrecorded;
    }
    return std::nullopt;
}

Reason whyNotStarted(const Trial& trial, const Target& target) {
    if (died(trial) && wasOnItsWay(trial, target)) {
        return Loss::unrecorded;
    }
    if (!target.group.empty() && hasWaited(trial, target) &&
        trial.disturbance == Disturbance::fails && trial.step.operation == Operation::move) {
        return Loss::programDropped;
    }
    if (isUndoneByOther(trial, target, bytesAt(trial.end, target.path))) {
        return Loss::twoHosts;
    }
    return std::nullopt;
}

Reason whyWaiting(const Trial& trial, const std::string& path, const std::string& file) {
    if (isTakenAway(trial, file) && timesScheduled(trial, path) > 1) {
        return Loss::scheduledTwice;
    }
    if (isRefusedBySystem(trial, path)) {
        return Loss::notScheduled;
    }
    if (isPowerLoss(trial) && isZero(bytesAt(trial.end, path))) {
        return Loss::notForced; // it was fetched again for the next run
    }
    return std::nullopt;
}

Reason whyThere(const Trial& trial, const std::string& path) {
    if (path.starts_with("update\\temp\\")) {
        return isNobodysAside(trial, path) ? Reason(Loss::keptAside) : std::nullopt;
    }
    return isOnOffer(trial.packet, path) ? Reason(Loss::leftover) : std::nullopt;
}

Reason whyNoFileList(const Trial& trial) {
    const bool wasInIt = trial.step.what.find(fileListName) != std::string::npos;
    const bool wasZeroed = isPowerLoss(trial) && wroteTo(trial, fileListName, 1);
    const bool hadNoRoom =
        trial.disturbance == Disturbance::fullDisk && wroteTo(trial, fileListName, trial.at);
    return (wasInIt && (died(trial) || trial.disturbance == Disturbance::fails)) || wasZeroed ||
                   hadNoRoom
               ? Reason(Loss::fileListCut)
               : std::nullopt;
}

} // namespace crash
