#pragma once

#include "crash/judge.h"

/// A client made up for the judge: no file, no process, a read that has failed and did no harm.
namespace crash {

inline constexpr const char* plain = "bin\\plain.dll";
inline constexpr const char* fresh = "bin\\new.dll";       ///< data, not there before
inline constexpr const char* placed = "group\\placed.dll"; ///< in a group that is refused
inline constexpr const char* busy = "wait\\busy.dll";      ///< in a group that waits

const Target& targetOf(const Packet& packet, const std::string& path);

/// A plain file of which an older form waits, a new one, a group that is refused and one that
/// waits.
Packet packetOfAll();

Trial healthyTrial(const Packet& packet);

} // namespace crash
