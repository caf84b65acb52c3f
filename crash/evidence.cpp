#include "crash/evidence.h"

#include <algorithm>

namespace crash {

namespace {

template <class Map>
typename Map::mapped_type valueIn(const Map& map, const std::string& key) {
    const auto found = map.find(key);
    return found == map.end() ? typename Map::mapped_type() : found->second;
}

bool hasLogged(const Trial& trial, const std::string& text, const std::string& more) {
    for (const Session& session : trial.sessions) {
        for (const std::string& line : session.log) {
            if (line.find(text) != std::string::npos && line.find(more) != std::string::npos) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

std::string bytesAt(const Snapshot& at, const std::string& path) {
    return valueIn(at.files, path);
}

std::string entryIn(const Snapshot& at, const Target& target) {
    return at.fileList ? valueIn(*at.fileList, target.path) : "";
}

std::string versionIn(const Snapshot& at, const std::string& key) {
    return valueIn(at.stored.versions, key);
}

std::string textIn(const Snapshot& at, const std::string& key) {
    return valueIn(at.stored.texts, key);
}

bool isZero(const std::string& bytes) {
    return !bytes.empty() && bytes.find_first_not_of('\0') == std::string::npos;
}

bool isInTemp(const Snapshot& at, const std::string& bytes) {
    return std::any_of(at.files.begin(), at.files.end(), [&](const auto& file) {
        return file.first.starts_with("update\\temp\\") && file.second == bytes;
    });
}

bool isScheduled(const Snapshot& at, const std::string& path) {
    return std::any_of(at.delayed.begin(), at.delayed.end(),
                       [&](const std::string& move) { return move.ends_with(" > " + path); });
}

bool isHandled(const Snapshot& at, const Target& target) {
    return bytesAt(at, target.path) == target.after || isScheduled(at, target.path);
}

bool isAnyHandled(const Trial& trial) {
    return std::any_of(trial.packet.targets.begin(), trial.packet.targets.end(),
                       [&](const Target& target) { return isHandled(trial.broken, target); });
}

bool isTarget(const Trial& trial, const std::string& path) {
    return std::any_of(trial.packet.targets.begin(), trial.packet.targets.end(),
                       [&](const Target& target) { return target.path == path; });
}

bool isToStay(const Trial& trial, const Target& target) {
    const auto& targets = trial.packet.targets;
    return !target.group.empty() &&
           std::any_of(targets.begin(), targets.end(), [&](const Target& other) {
               return other.isRefused && other.group == target.group;
           });
}

bool hasWaited(const Trial& trial, const Target& target) {
    return hasLogged(trial, "set peeding :", "\\" + target.path);
}

bool isRefusedBySystem(const Trial& trial, const std::string& path) {
    return hasLogged(trial, "peeding src to dst error", "") &&
           trial.step.operation == Operation::moveAtRestart &&
           trial.step.what.ends_with("\\" + path);
}

bool isOfEarlierRun(const Trial& trial, const Target& target, const std::string& bytes) {
    const auto& delayed = trial.packet.delayed;
    return std::any_of(delayed.begin(), delayed.end(), [&](const auto& move) {
        return move.second == target.path && trial.packet.files.at(move.first) == bytes;
    });
}

bool isTakenAway(const Trial& trial, const std::string& name) {
    return hasLogged(trial, "move succ, delete:", name) ||
           hasLogged(trial, "dupl padding, delete:", name);
}

bool isPowerLoss(const Trial& trial) {
    return trial.disturbance == Disturbance::losesAll;
}

bool wasOnItsWay(const Trial& trial, const Target& target) {
    return isHandled(trial.broken, target) ||
           (isPowerLoss(trial) && isZero(bytesAt(trial.broken, target.path)));
}

bool isUndoneByOther(const Trial& trial, const Target& target, const std::string& bytes) {
    if (trial.disturbance != Disturbance::otherHost ||
        bytes != bytesAt(trial.broken, target.path)) {
        return false;
    }
    return bytes.empty()
               ? isInTemp(trial.broken, target.after)
               : bytes == target.before && !target.group.empty() && !hasWaited(trial, target);
}

std::optional<Loss> lossOf(const Trial& trial, const Target& target, const std::string& bytes) {
    const bool isMissing = bytes.empty() && bytesAt(trial.broken, target.path).empty();
    const bool isOld = bytes == target.before;
    if (isPowerLoss(trial) && isZero(bytes)) {
        return Loss::notForced;
    }
    if (isOld && isRefusedBySystem(trial, target.path)) {
        return Loss::notScheduled;
    }
    if (isOld && isTakenAway(trial, hashOf(trial, target))) {
        return Loss::scheduledTwice;
    }
    if (isUndoneByOther(trial, target, bytes)) {
        return Loss::twoHosts;
    }
    if (isHandled(trial.broken, target) && isOfEarlierRun(trial, target, bytes)) {
        return Loss::overtaken;
    }
    if (isMissing && isInTemp(trial.broken, target.before)) {
        return Loss::betweenMoves;
    }
    if (bytes == target.after && isToStay(trial, target) &&
        (isHandled(trial.broken, target) || hasWaited(trial, target))) {
        return Loss::groupTorn;
    }
    return std::nullopt;
}

std::string hashOf(const Trial& trial, const Target& target) {
    for (const sandbox::OfferedMaterial& material : trial.packet.offer.materials) {
        if (material.extends.at("file_path") == target.path) {
            return material.extends.at("file_md5");
        }
    }
    return "";
}

} // namespace crash
