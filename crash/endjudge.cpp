#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "crash/explain.h"
#include "crash/judgements.h"
#include "host/settings.h"

namespace crash {

namespace {

/// The judgement of where a trial has come to, a subject at a time.
class EndJudge {
public:
    EndJudge(const Trial& given, std::vector<Finding>& told) : trial(given), findings(told) {}

    void judge() {
        for (const Target& target : trial.packet.targets) {
            lookAtTarget(target);
            lookAtEntry(target);
            lookAtVersion(target);
            lookAtProgram(target);
        }
        lookAtForeignPrograms();
        lookAtGroups();
        lookAtPacketVersions();
        lookAtForeignEntries();
        lookAtLists();
        lookAtOtherFiles();
    }

private:
    void tell(const std::string& what, Reason why) { findings.push_back({what, why}); }

    void lookAtTarget(const Target& target) {
        const Bytes bytes = bytesAt(trial.end, target.path);
        if (bytes == bytesAt(trial.wanted, target.path) ||
            (isToStay(trial.packet, target) && bytes == bytesBefore(target))) {
            return;
        }
        const char* const how = !bytes                   ? " is missing"
                                : bytes == target.before ? " is the old one"
                                : bytes == target.after  ? " is the new one"
                                                         : " holds other bytes";
        const Reason why = whyDifferent(trial, target, bytes);
        tell(target.path + how + " in the end", why);
        different.emplace(target.path, why);
    }

    void lookAtEntry(const Target& target) {
        const std::string entry = entryIn(trial.end, target.path);
        if (!trial.end.fileList || entry == entryIn(trial.wanted, target.path) ||
            (isDifferent(target) && isPossibleEntry(trial.packet, target, entry))) {
            return;
        }
        tell(target.path + " has \"" + entry + "\" in filelist.xml",
             whyEntry(trial, target, entry));
    }

    /// One that carries its own version may have it in the store as well; it must be true.
    void lookAtVersion(const Target& target) {
        const std::string stored = versionIn(trial.end.stored, target.path);
        const bool isTrue = stored == newVersion && bytesAt(trial.end, target.path) == target.after;
        const bool isPossible =
            stored == newVersion || stored == versionIn(trial.packet.stored, target.path);
        if (stored == versionIn(trial.wanted.stored, target.path) || isTrue ||
            (isDifferent(target) && isPossible)) {
            return;
        }
        tell(target.path + " has version \"" + stored + "\" in the store",
             whyVersion(trial, target.path, stored));
    }

    void lookAtProgram(const Target& target) {
        const auto& wanted = trial.wantedPrograms;
        if (target.program.empty() ||
            std::count(wanted.begin(), wanted.end(), target.program) == 0) {
            return;
        }
        const bool wasStarted =
            std::any_of(trial.sessions.begin(), trial.sessions.end(), [&](const Session& session) {
                const auto& programs = session.programs;
                return std::count(programs.begin(), programs.end(), target.program) > 0;
            });
        if (!wasStarted) {
            tell(target.program + " was never started", whyNotStarted(trial, target));
        }
    }

    void lookAtForeignPrograms() {
        const auto& wanted = trial.wantedPrograms;
        for (const Session& session : trial.sessions) {
            for (const std::string& program : session.programs) {
                if (std::count(wanted.begin(), wanted.end(), program) == 0) {
                    tell(program + " was started, and must not be", std::nullopt);
                }
            }
        }
    }

    /// A mixed group is a loss of its own: that a member keeps its old file does not excuse it.
    void lookAtGroups() {
        struct Group {
            std::size_t after = 0;
            std::size_t members = 0;
            bool isAsWanted = true;
            Reason why;
        };
        std::map<std::string, Group> groups;
        for (const Target& target : trial.packet.targets) {
            const Bytes bytes = bytesAt(trial.end, target.path);
            Group& group = groups[target.group];
            ++group.members;
            group.after += bytes == target.after ? 1 : 0;
            group.isAsWanted = group.isAsWanted && bytes == bytesAt(trial.wanted, target.path);
            const auto found = different.find(target.path);
            if (found == different.end()) {
                continue;
            }
            if (found->second != Loss::scheduledTwice) {
                group.why = found->second;
            } else if (trial.disturbance == Disturbance::otherHost) {
                group.why = Loss::twoHosts; // both have scheduled it, and one its group as a whole
            }
        }
        groups.erase("");
        for (const auto& [name, group] : groups) {
            if (group.after > 0 && group.after < group.members && !group.isAsWanted) {
                tell("group " + name + " is mixed in the end", group.why);
            }
        }
    }

    void lookAtPacketVersions() {
        for (const char* key : {versionKey, virusLibKey}) {
            const std::string stored = versionIn(trial.end.stored, key);
            if (stored != versionIn(trial.wanted.stored, key)) {
                tell(std::string(key) + " is \"" + stored + "\" in the store",
                     whyVersion(trial, key, stored));
            }
        }
    }

    void lookAtForeignEntries() {
        for (const auto& [name, entry] : trial.end.fileList.value_or(Entries())) {
            if (!isTarget(trial.packet, name)) {
                tell(name + " has got an entry in filelist.xml", std::nullopt);
            }
        }
        for (const auto& [key, version] : trial.end.stored.versions) {
            if (!isTarget(trial.packet, key) && key != versionKey && key != virusLibKey) {
                tell(key + " has got a version in the store", std::nullopt);
            }
        }
    }

    /// The lists need not be the same texts; they must be true.
    void lookAtLists() {
        if (!damagedLists(trial.end.stored).empty()) {
            tell("a stored list is no JSON in the end", std::nullopt);
            return;
        }
        const auto listIn = [&](const char* key) {
            const std::string text = textIn(trial.end.stored, key);
            return text.empty() ? nlohmann::json() : nlohmann::json::parse(text);
        };
        const nlohmann::json padding = listIn(settingkeys::kelvarPaddingFileList);
        for (const auto& [path, name] : padding.items()) {
            lookAtWaiting(path, name.get<std::string>());
        }
        const nlohmann::json names = listIn(settingkeys::kelvarTempFileList);
        for (const nlohmann::json& name : names) {
            lookAtAside(name.get<std::string>());
        }
        if (!trial.end.delayed.empty()) {
            tell("the system still keeps: " + trial.end.delayed.front(), std::nullopt);
        }
    }

    void lookAtWaiting(const std::string& path, std::string file) {
        const auto& earlier = trial.packet.delayed;
        if (!isTarget(trial.packet, path) &&
            std::none_of(earlier.begin(), earlier.end(),
                         [&](const auto& move) { return move.second == path; })) {
            tell(path + " is listed as waiting, and nobody has offered it", std::nullopt);
        }
        file.erase(0, file.find_first_not_of('\\')); // of a member of a cabinet
        if (trial.end.files.count("update\\" + file) > 0 && !isScheduled(trial.end, path)) {
            tell(path + " is listed as waiting and nothing is to replace it",
                 whyWaiting(trial, path, file));
        }
    }

    /// A name of the temp list, which the next run deletes there.
    void lookAtAside(const std::string& name) {
        const auto& materials = trial.packet.offer.materials;
        const bool isOffered = std::any_of(materials.begin(), materials.end(),
                                           [&](const auto& one) { return one.md5 == name; });
        const std::string before = textIn(trial.packet.stored, settingkeys::kelvarTempFileList);
        if (!isOffered && before.find("\"" + name + "\"") == std::string::npos) {
            tell(name + " is listed as pushed aside, and nobody has offered it", std::nullopt);
        }
    }

    void lookAtOtherFiles() {
        for (const auto& [path, bytes] : trial.end.files) {
            if (trial.wanted.files.count(path) == 0 && !isTarget(trial.packet, path)) {
                tell(path + " stays", whyThere(trial, path));
            }
        }
        for (const auto& [path, bytes] : trial.wanted.files) {
            if (!isTarget(trial.packet, path) && !path.starts_with("update\\") &&
                bytesAt(trial.end, path) != bytes) {
                tell(path + " is not as it was", std::nullopt);
            }
        }
    }

    bool isDifferent(const Target& target) const { return different.count(target.path) > 0; }

    const Trial& trial;
    std::vector<Finding>& findings;
    std::map<std::string, Reason> different; ///< targets that are told of already
};

} // namespace

void judgeEnd(const Trial& trial, std::vector<Finding>& findings) {
    EndJudge(trial, findings).judge();
}

} // namespace crash
