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
    scheduledTwice,
    notScheduled,
    overtaken,
    betweenMoves,
    groupTorn,
    takenBackTooFar,
    twoHosts,
    sizeOfBefore,
    notForced,
    leftover,
};
inline constexpr std::array lossMeanings{
    "setting cut: a stored list is no JSON, and every run ends the host until it is cleared",
    "file list cut: filelist.xml is saved in place and was not whole",
    "not recorded: a file was in place or scheduled, and the lists do not say so",
    "scheduled twice: the second time takes the waiting file, and the old one stays",
    "not scheduled: a member of a waiting group was refused by the system, which nobody reads",
    "overtaken: what has waited since an earlier run replaces the newer file at the restart",
    "between two moves: a target is missing, and the restart deletes its old file",
    "torn group: a member is new, and nobody is left to take it back with its group",
    "taken back too far: a refused group moves an old file that only waited over its new one",
    "two hosts: one pushes aside or takes back what the other has placed",
    "size of before: the list describes a waiting file by what stood at its target",
    "not forced to the disk: a file reached its target and its bytes did not",
    "left over: a file stays in update that nothing needs",
};

struct Finding {
    std::string what;
    std::optional<Loss> loss = {}; ///< nothing: a fault
};

/// A disturbed session and what came of it, with what comes of an undisturbed one.
struct Trial {
    const Packet& packet;
    Disturbance disturbance;
    Step step = {};       ///< the disturbed one
    Snapshot broken = {}; ///< behind the disturbed session
    Snapshot end = {};
    Snapshot wanted = {}; ///< the undisturbed end
    std::vector<Session> sessions = {};
    std::vector<std::string> wantedPrograms = {};
};

enum class Outcome { recovered, oldKept, loss, fault };
inline constexpr std::array outcomeNames{"recovered", "old kept", "required loss", "FAULT"};

/// Everything that is not as without the disturbance; none when all was recovered.
std::vector<Finding> judge(const Trial& trial);

/// What the findings come to: old kept when nothing but old files is told.
Outcome outcomeOf(const std::vector<Finding>& findings);

/// Which of the two stored lists are no JSON. An operator clears them.
std::vector<std::string> damagedLists(const Stored& stored);

} // namespace crash
