#include <algorithm>

#include "sandbox/common/clientpath.h"
#include "sandbox/doctor/checks.h"

namespace sandbox::doctor {
namespace {

using Moves = std::vector<Delayed>;

bool begins(const std::string& text, const std::string& with) {
    return text.rfind(with, 0) == 0;
}

class DelayedCheck {
public:
    DelayedCheck(const Snapshot& seen, Report& output)
        : snapshot(seen), moves(*seen.delayed), report(output) {}

    void run() {
        for (auto move = moves.begin(); move != moves.end(); ++move) {
            if (!move->fromKey || (!move->to.empty() && !move->toKey)) {
                add(Code::delayedOutside, *move, "the restart moves over the client's border: ");
            } else if (move->to.empty()) {
                checkDelete(*move);
            } else {
                checkReplace(move);
            }
        }
    }

private:
    void checkDelete(const Delayed& move) {
        if (!begins(*move.fromKey, tempFolder) && snapshot.fileAt(*move.fromKey) != nullptr) {
            add(Code::delayedDelete, move, "the restart deletes ");
        }
    }

    void checkReplace(Moves::const_iterator move) {
        const bool isThere = snapshot.fileAt(*move->fromKey) != nullptr;
        if (!begins(*move->fromKey, updateFolder)) {
            add(Code::delayedForeign, *move, "a move that is not the updater's: ");
        } else if (!isThere) {
            checkGone(*move);
        } else if (std::any_of(moves.begin(), move,
                               [&](const Delayed& other) { return clashes(other, *move); })) {
            add(Code::delayedDouble, *move, "asked for twice: ");
        } else if (snapshot.settings && !isListed(*move)) {
            checkUnlisted(*move);
        }
    }

    /// Two moves of files that are there, of which only one can do its work.
    bool clashes(const Delayed& other, const Delayed& move) const {
        return !other.to.empty() && other.fromKey && snapshot.fileAt(*other.fromKey) != nullptr &&
               (other.toKey == move.toKey || other.fromKey == move.fromKey);
    }

    bool isListed(const Delayed& move) const {
        return std::any_of(snapshot.padding.begin(), snapshot.padding.end(),
                           [&](const Waiting& entry) {
                               return entry.key == move.fromKey && entry.toKey == move.toKey;
                           });
    }

    void checkUnlisted(const Delayed& move) {
        const FileFacts* file = snapshot.fileAt(*move.fromKey);
        const std::string name = move.fromKey->substr(move.fromKey->find_last_of('\\') + 1);
        if (isMd5(name) && name != file->md5) {
            add(Code::waitingChanged, move, "its content is not its name's: ");
        } else {
            add(Code::delayedUnlisted, move, "not in the padding list: ");
        }
    }

    /// A target that was replaced in the meantime, or is again on its way, misses nothing.
    void checkGone(const Delayed& move) {
        const bool isOnItsWay = std::any_of(moves.begin(), moves.end(), [&](const Delayed& other) {
            return other.toKey == move.toKey && other.fromKey &&
                   snapshot.fileAt(*other.fromKey) != nullptr;
        });
        if (!isOnItsWay && !isListed(move) && !snapshot.isListedAsIs(*move.toKey) &&
            !snapshot.isUnknown(*move.fromKey) && !snapshot.isUnknown(*move.toKey)) {
            add(Code::delayedSourceGone, move, "there is nothing to be moved: ");
        }
    }

    void add(Code code, const Delayed& move, const std::string& what) {
        const std::string target = move.to.empty() ? "" : " to " + brief(move.to, move.toKey);
        report.add(code, brief(move.from, move.fromKey),
                   what + brief(move.from, move.fromKey) + target);
    }

    static std::string brief(const std::string& path, const std::optional<std::string>& key) {
        return key.value_or(path);
    }

    const Snapshot& snapshot;
    const Moves& moves;
    Report& report;
};

} // namespace

void checkDelayed(const Snapshot& snapshot, Report& report) {
    if (snapshot.delayed) {
        DelayedCheck(snapshot, report).run();
    }
}

} // namespace sandbox::doctor
