#pragma once

#include <optional>
#include <string>

#include "crash/judge.h"

/// What snapshots and logs of a trial say. Plain questions.
namespace crash {

// --- one moment ---

/// Empty where nothing stands.
std::string bytesAt(const Snapshot& at, const std::string& path);
std::string entryIn(const Snapshot& at, const Target& target);
std::string versionIn(const Snapshot& at, const std::string& key);
std::string textIn(const Snapshot& at, const std::string& key);

bool isZero(const std::string& bytes);
/// Whether a file of update\temp holds these bytes.
bool isInTemp(const Snapshot& at, const std::string& bytes);
/// Whether the restart is to replace the file.
bool isScheduled(const Snapshot& at, const std::string& path);
/// Whether the target was on its way, so that the next run may not see it again.
bool isHandled(const Snapshot& at, const Target& target);

// --- the whole trial ---

bool isTarget(const Trial& trial, const std::string& path);
bool isAnyHandled(const Trial& trial);
/// Whether the group of the target is refused as a whole.
bool isToStay(const Trial& trial, const Target& target);
/// Whether a session has left the target to the restart.
bool hasWaited(const Trial& trial, const Target& target);
/// Whether the system has refused to replace that file at the restart.
bool isRefusedBySystem(const Trial& trial, const std::string& path);
/// Whether these are the bytes that waited for the target before the first session.
bool isOfEarlierRun(const Trial& trial, const Target& target, const std::string& bytes);
/// Whether the bookkeeping of a session has deleted that waiting file.
bool isTakenAway(const Trial& trial, const std::string& name);
bool isPowerLoss(const Trial& trial);
/// Whether the target was on its way at the break, so that what comes later may leave it out.
bool wasOnItsWay(const Trial& trial, const Target& target);
/// Whether of two hosts the one that went on has undone the work of the one that came between.
bool isUndoneByOther(const Trial& trial, const Target& target, const std::string& bytes);
/// Why a target may end with these bytes; nothing: it may not.
std::optional<Loss> lossOf(const Trial& trial, const Target& target, const std::string& bytes);
/// MD5 of the file that the target is to become.
std::string hashOf(const Trial& trial, const Target& target);

} // namespace crash
