#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "crash/judge.h"

/// What snapshots and logs of a trial say. Plain questions.
namespace crash {

inline constexpr const char* fileListName = "filelist.xml";

// --- one moment ---

/// Nothing where no file stands, which an empty file is not.
using Bytes = std::optional<std::string>;

Bytes bytesAt(const Snapshot& at, const std::string& path);
/// Nothing for a file that is new.
Bytes bytesBefore(const Target& target);
/// What filelist.xml has for it before the first session.
std::string formerEntry(const Target& target);
std::string entryIn(const Snapshot& at, const std::string& path);
std::string versionIn(const Stored& stored, const std::string& key);
std::string textIn(const Stored& stored, const std::string& key);

bool isZero(const Bytes& bytes);
bool isInTemp(const Snapshot& at, const Bytes& bytes);
/// Whether the restart is to replace the file.
bool isScheduled(const Snapshot& at, const std::string& path);
/// Whether the new file is in place or waits for the restart, so that the next run may not see it
/// again.
bool isHandled(const Packet& packet, const Snapshot& at, const Target& target);

// --- the packet ---

bool isTarget(const Packet& packet, const std::string& path);
/// Whether the group of the target is refused as a whole.
bool isToStay(const Packet& packet, const Target& target);
/// What the packet has for the target; null without.
const sandbox::OfferedMaterial* materialOf(const Packet& packet, const std::string& path);
/// MD5 of the file that the target is to become.
std::string hashOf(const Packet& packet, const Target& target);
/// Whether these are the bytes that waited for the target before the first session.
bool isOfEarlierRun(const Packet& packet, const Target& target, const Bytes& bytes);

/// Whether the name of that file in `update` is the MD5 of a file or a material of the packet.
bool isOnOffer(const Packet& packet, const std::string& path);

// --- the whole trial ---

bool isDeath(Disturbance disturbance);
/// Whether the disturbed session ended where it was told to. What it left undone it could not do.
bool died(const Trial& trial);
bool isPowerLoss(const Trial& trial);
/// Whether a line of a log has both texts.
bool hasLogged(const Trial& trial, const std::string& text, const std::string& more = "");
/// Whether the disturbed step is this operation on something with that text in it.
bool isStep(const Trial& trial, Operation operation, const std::string& what);
/// Whether the disturbed session wrote to that list or key, from that step on (counted from 1).
bool wroteTo(const Trial& trial, const std::string& what, std::size_t from);
/// Whether the disturbed session was kept from writing that list or key.
bool wasKeptFromWriting(const Trial& trial, const std::string& what);
/// How often sessions have left the target to the restart.
std::size_t timesScheduled(const Trial& trial, const std::string& path);
bool hasWaited(const Trial& trial, const Target& target);
/// Whether the system has refused to replace that file at the restart.
bool isRefusedBySystem(const Trial& trial, const std::string& path);
/// Whether the bookkeeping of a session has deleted that waiting file.
bool isTakenAway(const Trial& trial, const std::string& name);
/// Whether the target was on its way at the break, so that what comes later may leave it out.
bool wasOnItsWay(const Trial& trial, const Target& target);
/// Whether of two hosts the one that went on has undone the work of the one that came between.
bool isUndoneByOther(const Trial& trial, const Target& target, const Bytes& bytes);

} // namespace crash
