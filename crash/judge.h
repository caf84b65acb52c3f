#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "crash/machine.h"

/// What a disturbance has cost, and whether the required behaviour explains it.
namespace crash {

/// What the required behaviour itself cannot bring back.
enum class Loss {
    settingCut,
    fileListCut,
    unrecorded,
    programDropped,
    scheduledTwice,
    notScheduled,
    overtaken,
    betweenMoves,
    groupTorn,
    staysScheduled,
    takenBackTooFar,
    notTakenBack,
    twoHosts,
    sizeOfBefore,
    notForced,
    keptAside,
    leftover,
};
inline constexpr std::array lossMeanings{
    "setting cut: a stored list is no JSON, and every run ends the host until it is cleared",
    "file list cut: filelist.xml is saved in place and was not whole",
    "not recorded: a file was in place or scheduled, and the lists do not say so",
    "program dropped: a member was in use, and a group that waits as a whole starts none",
    "scheduled twice: the second time takes the waiting file, and the old one stays",
    "not scheduled: a member of a waiting group was refused by the system, which nobody reads",
    "overtaken: what has waited since an earlier run replaces the newer file at the restart",
    "between two moves: a target is missing, and the restart deletes its old file",
    "torn group: a member is new, and nobody is left to take it back with its group",
    "stays scheduled: a member of a refused group waits, and its replace is not withdrawn",
    "taken back too far: a refused group moves an old file that only waited over its new one",
    "not taken back: a rollback failed half way, and the next run sweeps the old file away",
    "two hosts: one pushes aside or takes back what the other has placed",
    "size of before: the list describes a waiting file by what stood at its target",
    "not forced to the disk: a file reached its target and its bytes did not",
    "kept aside: an old file stays in update\\temp, and neither a list nor the restart has it",
    "left over: a file stays in update that nothing needs",
};
static_assert(lossMeanings.size() == static_cast<std::size_t>(Loss::leftover) + 1);

struct Finding {
    std::string what;
    std::optional<Loss> loss = {}; ///< nothing: a fault
};

/// What stood behind a session of the host or behind a restart.
struct Moment {
    std::size_t run = 0; ///< how many sessions since the disturbed one
    Snapshot stands = {};
};

/// A disturbed session and what came of it, with what comes of an undisturbed one.
struct Trial {
    const Packet& packet;
    Disturbance disturbance;
    std::size_t at = 0;             ///< counts from 1; 0 with no disturbance
    Step step = {};                 ///< the disturbed one; none where look-ups are counted
    Snapshot broken = {};           ///< behind the disturbed session
    std::vector<Moment> later = {}; ///< all that were looked at between that and the end
    Snapshot end = {};
    Snapshot again = {};  ///< behind one more run
    Snapshot wanted = {}; ///< the undisturbed end
    std::vector<Session> sessions = {};
    std::vector<std::string> wantedPrograms = {};
    std::vector<std::string> notMoved = {}; ///< what restarts could not do, in words
};

enum class Outcome { recovered, oldKept, loss, fault };
inline constexpr std::array outcomeNames{"recovered", "old kept", "required loss", "FAULT"};
static_assert(outcomeNames.size() == static_cast<std::size_t>(Outcome::fault) + 1);

/// Everything that is not as without the disturbance; none when all was recovered.
std::vector<Finding> judge(const Trial& trial);

/// What the findings come to: old kept when nothing but old files is told.
Outcome outcomeOf(const std::vector<Finding>& findings);

/// From which run on the targets were as in the undisturbed end; nothing: never for good.
std::optional<std::size_t> runsUntilWhole(const Trial& trial);

/// Which of the two stored lists are no JSON. An operator clears them.
std::vector<std::string> damagedLists(const Stored& stored);

} // namespace crash
