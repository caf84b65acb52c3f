#include "hostile/trial.h"

#include <algorithm>

#include "crash/machine.h"
#include "hostile/disk.h"

namespace hostile {

namespace {

std::string onDisk(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

bool isHash(const std::string& name) {
    return name.size() == 32 && name.find_first_not_of("0123456789abcdef") == std::string::npos;
}

class Judge {
public:
    Judge(const std::vector<Pair>& tested, const Expected& wanted)
        : pairs(tested), expected(wanted), packet(packetFor(tested)), machine(packet),
          around(machine.file(hostPath).parent_path().parent_path()),
          root(around.parent_path().parent_path()) {
        machine.layOut();
    }

    Verdict judge() {
        runHostile();
        runSound();
        return verdict;
    }

private:
    void fault(const std::string& what) { verdict.faults.push_back(what); }

    void runHostile() {
        const Listing before = listed(root);
        const crash::Session session = machine.run();
        const Listing after = listed(root);
        const crash::Snapshot now = machine.look();
        testEnd(session, "the hostile run");
        for (const std::string& path : differences(before, after, mayChange(now))) {
            fault("the hostile run: " + path);
        }
        testReason(session.log);
        for (const Pair& pair : pairs) {
            testOutcome(pair, now);
        }
        const std::string near = textOf(nearImage(expected.endsAtDownload ? 1 : 2));
        if (bytesAt(now, nearPath) != near) {
            fault(std::string(nearPath) + " beside it is not as it should be");
        }
    }

    void runSound() {
        offerSound(packet, pairs);
        const Listing before = listed(root);
        testEnd(machine.run(), "the sound run");
        const crash::Snapshot now = machine.look();
        for (const std::string& path : differences(before, listed(root), mayChange(now, true))) {
            fault("the sound run: " + path);
        }
        for (const Pair& pair : pairs) {
            if (bytesAt(now, pair.path) != textOf(pair.afterSound)) {
                fault(pair.path + " is not whole behind the sound run");
            }
        }
        if (bytesAt(now, nearPath) != textOf(nearImage(2))) {
            fault(std::string(nearPath) + " is not whole behind the sound run");
        }
    }

    void testEnd(const crash::Session& session, const char* which) {
        if (session.end != crash::End::itself) {
            fault(std::string(which) + " crashed, hung or threw");
        }
    }

    void testReason(const std::vector<std::string>& log) {
        const auto says = [&](const char* text) {
            return std::any_of(log.begin(), log.end(), [&](const std::string& line) {
                return line.find(text) != std::string::npos;
            });
        };
        const bool named = says("task premove, bad member:");
        const bool sized = says("task premove, cabinet asks for too much, members:");
        const Reason reason = named ? Reason::badMember : sized ? Reason::tooMuch : Reason::none;
        if (expected.reason != Reason::any && (expected.reason != reason || (named && sized))) {
            fault("the log gives another reason, or none");
        }
    }

    void testOutcome(const Pair& pair, const crash::Snapshot& now) {
        const std::string bytes = bytesAt(now, pair.path);
        const bool isOld = bytes == textOf(pair.before);
        Outcome outcome = Outcome::placed;
        if (isOld) {
            outcome = leavesTraces(now) ? Outcome::refused : Outcome::untouched;
        } else if (bytes != textOf(pair.afterHostile)) {
            outcome = Outcome::fault;
            fault(pair.path + " holds neither the old nor the new file");
        }
        if (!isMeant(outcome)) {
            fault(pair.path + ": " + outcomeNames.at(static_cast<std::size_t>(outcome)));
        }
        verdict.outcomes.push_back(outcome);
    }

    bool isMeant(Outcome outcome) const {
        switch (expected.fate) {
        case Fate::untouched:
            return outcome == Outcome::untouched;
        case Fate::refused:
            return outcome == Outcome::untouched || outcome == Outcome::refused;
        case Fate::placed:
            return outcome == Outcome::placed;
        case Fate::either:
            break;
        }
        return outcome != Outcome::fault;
    }

    /// Whether anything but downloads and old files lies in the update folder.
    bool leavesTraces(const crash::Snapshot& now) const {
        return std::any_of(now.files.begin(), now.files.end(), [this](const auto& file) {
            return file.first.starts_with("update\\") && !isOldFile(file) &&
                   !isDownload(file.first.substr(7));
        });
    }

    /// Whether it is what stood at a target, moved out of the way.
    bool isOldFile(const std::pair<const std::string, std::string>& file) const {
        return file.first.starts_with("update\\temp\\") &&
               (file.second == textOf(nearImage(1)) ||
                std::any_of(pairs.begin(), pairs.end(),
                            [&](const Pair& pair) { return file.second == textOf(pair.before); }));
    }

    bool isDownload(const std::string& name) const {
        return name == materials::md5Hex(nearImage(2)) ||
               std::any_of(pairs.begin(), pairs.end(), [&](const Pair& pair) {
                   return isHash(name) && name == pair.hostile.md5;
               });
    }

    static std::string bytesAt(const crash::Snapshot& now, const std::string& path) {
        const auto file = now.files.find(path);
        return file == now.files.end() ? "(absent)" : file->second; // an empty one may be meant
    }

    /// Paths below the surroundings that a run may touch.
    std::vector<std::string> mayChange(const crash::Snapshot& now, bool isSound = false) const {
        const std::string machines = around.lexically_relative(root).string() + "/";
        const std::string client = machines + "client/";
        std::vector<std::string> paths{machines + "stores.json",
                                       machines + "session0.json",
                                       machines + "session1.json",
                                       machines + "home/OrvSecurity/config/uninst/filelist.xml",
                                       client + onDisk(nearPath),
                                       client + "update/" + materials::md5Hex(nearImage(2)),
                                       client + "delayed-moves.journal"};
        for (const Pair& pair : pairs) {
            paths.push_back(client + onDisk(pair.path));
            if (isHash(pair.hostile.md5)) {
                paths.push_back(client + "update/" + pair.hostile.md5);
            }
        }
        for (const auto& file : now.files) {
            if (isOldFile(file)) {
                paths.push_back(client + onDisk(file.first));
            }
        }
        if (isSound || expected.fate != Fate::untouched) {
            paths.push_back(client + "update/");
        }
        return paths;
    }

    const std::vector<Pair>& pairs;
    const Expected& expected;
    crash::Packet packet;
    crash::Machine machine;
    std::filesystem::path around; ///< the machine's folder, with the client's in it
    std::filesystem::path root;   ///< the surroundings'
    Verdict verdict;
};

} // namespace

Verdict tried(const std::vector<Pair>& pairs, const Expected& expected) {
    return Judge(pairs, expected).judge();
}

} // namespace hostile
