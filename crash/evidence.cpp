#include "crash/evidence.h"

#include <algorithm>

namespace crash {

namespace {

template <class Map>
typename Map::mapped_type valueIn(const Map& map, const std::string& key) {
    const auto found = map.find(key);
    return found == map.end() ? typename Map::mapped_type() : found->second;
}

bool writes(Operation operation) {
    switch (operation) {
    case Operation::storeSetting:
    case Operation::storeVersion:
    case Operation::openToWrite:
    case Operation::write:
        return true;
    default:
        return false;
    }
}

bool writesTo(const Step& step, const std::string& what) {
    return writes(step.operation) && step.what.find(what) != std::string::npos;
}

} // namespace

Bytes bytesAt(const Snapshot& at, const std::string& path) {
    const auto found = at.files.find(path);
    return found == at.files.end() ? std::nullopt : Bytes(found->second);
}

Bytes bytesBefore(const Target& target) {
    return target.before.empty() ? std::nullopt : Bytes(target.before);
}

std::string formerEntry(const Target& target) {
    return target.before.empty() ? "" : std::string(oldVersion) + " " + oldMd5 + " " + oldSize;
}

std::string entryIn(const Snapshot& at, const std::string& path) {
    return at.fileList ? valueIn(*at.fileList, path) : "";
}

std::string versionIn(const Stored& stored, const std::string& key) {
    return valueIn(stored.versions, key);
}

std::string textIn(const Stored& stored, const std::string& key) {
    return valueIn(stored.texts, key);
}

bool isZero(const Bytes& bytes) {
    return bytes && !bytes->empty() && bytes->find_first_not_of('\0') == std::string::npos;
}

bool isInTemp(const Snapshot& at, const Bytes& bytes) {
    return std::any_of(at.files.begin(), at.files.end(), [&](const auto& file) {
        return file.first.starts_with("update\\temp\\") && file.second == bytes;
    });
}

bool isScheduled(const Snapshot& at, const std::string& path) {
    return std::any_of(at.delayed.begin(), at.delayed.end(),
                       [&](const std::string& move) { return move.ends_with(" > " + path); });
}

bool isHandled(const Packet& packet, const Snapshot& at, const Target& target) {
    const std::string replace = "update\\" + hashOf(packet, target) + " > " + target.path;
    return bytesAt(at, target.path) == target.after ||
           std::count(at.delayed.begin(), at.delayed.end(), replace) > 0;
}

bool isTarget(const Packet& packet, const std::string& path) {
    return std::any_of(packet.targets.begin(), packet.targets.end(),
                       [&](const Target& target) { return target.path == path; });
}

bool isToStay(const Packet& packet, const Target& target) {
    const auto& targets = packet.targets;
    return !target.group.empty() &&
           std::any_of(targets.begin(), targets.end(), [&](const Target& other) {
               return other.isRefused && other.group == target.group;
           });
}

const sandbox::OfferedMaterial* materialOf(const Packet& packet, const std::string& path) {
    const auto& materials = packet.offer.materials;
    const auto found = std::find_if(materials.begin(), materials.end(), [&](const auto& material) {
        return material.extends.at("file_path") == path;
    });
    return found == materials.end() ? nullptr : &*found;
}

std::string hashOf(const Packet& packet, const Target& target) {
    const sandbox::OfferedMaterial* const material = materialOf(packet, target.path);
    return material ? material->extends.at("file_md5") : "";
}

bool isOfEarlierRun(const Packet& packet, const Target& target, const Bytes& bytes) {
    return std::any_of(packet.delayed.begin(), packet.delayed.end(), [&](const auto& move) {
        return move.second == target.path && packet.files.at(move.first) == bytes;
    });
}

bool isOnOffer(const Packet& packet, const std::string& path) {
    const auto& materials = packet.offer.materials;
    return std::any_of(materials.begin(), materials.end(), [&](const auto& material) {
        return path == "update\\" + material.md5 ||
               path == "update\\" + material.extends.at("file_md5");
    });
}

bool isDeath(Disturbance disturbance) {
    switch (disturbance) {
    case Disturbance::diesBefore:
    case Disturbance::diesAfter:
    case Disturbance::losesOpen:
    case Disturbance::losesAll:
        return true;
    default:
        return false;
    }
}

bool died(const Trial& trial) {
    return trial.sessions.front().end == End::asPlanned;
}

bool isPowerLoss(const Trial& trial) {
    return trial.disturbance == Disturbance::losesAll;
}

bool hasLogged(const Trial& trial, const std::string& text, const std::string& more) {
    const auto has = [&](const std::string& line) {
        return line.find(text) != std::string::npos && line.find(more) != std::string::npos;
    };
    return std::any_of(trial.sessions.begin(), trial.sessions.end(), [&](const Session& session) {
        return std::any_of(session.log.begin(), session.log.end(), has);
    });
}

bool isStep(const Trial& trial, Operation operation, const std::string& what) {
    return trial.step.operation == operation && trial.step.what.find(what) != std::string::npos;
}

bool wroteTo(const Trial& trial, const std::string& what, std::size_t from) {
    const std::vector<Step>& steps = trial.sessions.front().steps;
    for (std::size_t number = std::max<std::size_t>(from, 1); number <= steps.size(); ++number) {
        if (writesTo(steps[number - 1], what)) {
            return true;
        }
    }
    return false;
}

bool wasKeptFromWriting(const Trial& trial, const std::string& what) {
    return died(trial) || (trial.disturbance == Disturbance::fails && writesTo(trial.step, what)) ||
           (trial.disturbance == Disturbance::fullDisk && wroteTo(trial, what, trial.at));
}

std::size_t timesScheduled(const Trial& trial, const std::string& path) {
    std::size_t times = 0;
    for (const Session& session : trial.sessions) {
        times += static_cast<std::size_t>(
            std::count_if(session.log.begin(), session.log.end(), [&](const std::string& line) {
                return line.find("set peeding :") != std::string::npos &&
                       line.find("\\" + path) != std::string::npos;
            }));
    }
    return times;
}

bool hasWaited(const Trial& trial, const Target& target) {
    return timesScheduled(trial, target.path) > 0;
}

bool isRefusedBySystem(const Trial& trial, const std::string& path) {
    return hasLogged(trial, "peeding src to dst error") &&
           trial.step.operation == Operation::moveAtRestart &&
           trial.step.what.ends_with("\\" + path);
}

bool isTakenAway(const Trial& trial, const std::string& name) {
    return hasLogged(trial, "move succ, delete:", name) ||
           hasLogged(trial, "dupl padding, delete:", name);
}

bool wasOnItsWay(const Trial& trial, const Target& target) {
    return isHandled(trial.packet, trial.broken, target) ||
           (isPowerLoss(trial) && isZero(bytesAt(trial.broken, target.path)));
}

bool isUndoneByOther(const Trial& trial, const Target& target, const Bytes& bytes) {
    if (trial.disturbance != Disturbance::otherHost ||
        bytes != bytesAt(trial.broken, target.path)) {
        return false;
    }
    return bytes ? bytes == target.before && !target.group.empty() && !hasWaited(trial, target)
                 : isInTemp(trial.broken, target.after);
}

} // namespace crash
