#pragma once

#include <string>
#include <vector>

#include "crash/packet.h"
#include "hostile/rawcabinet.h"

/// What the update platform offers in a trial: first hostile materials, then sound ones in their
/// place, both beside a sound file. Plain values; any thread.
namespace hostile {

/// A material as the platform offers it, and what stands at its target.
struct Offered {
    std::string filePath;
    std::string md5;
    std::string fileMd5;
    Bytes stored; ///< in the storage
    bool packed = false;
};

/// A target, what is offered for it in the first run and in the second one.
struct Pair {
    std::string path;
    Bytes before;
    Offered hostile;
    Offered sound;
    Bytes afterHostile; ///< what it may hold behind the first run, beside what stood there
    Bytes afterSound;
};

/// That content as it is, with the right hashes.
Offered plainly(const std::string& path, const Bytes& content);

/// A cabinet for "c.dll" in that folder, which has an older one, and the sound cabinet behind it.
Pair pairOf(const Bytes& cabinet, const std::string& folder);

inline constexpr const char* hostPath = "trayhost.exe";
inline constexpr const char* nearPath = "bin\\near.dll"; ///< of the file beside the pairs

/// That file: 1 is the one that stands there, 2 the one on offer.
Bytes nearImage(std::uint16_t major);

std::string textOf(const Bytes& bytes);

/// What stands on the client, and the hostile side of the pairs.
crash::Packet packetFor(const std::vector<Pair>& pairs);

/// The sound side in its place.
void offerSound(crash::Packet& packet, const std::vector<Pair>& pairs);

} // namespace hostile
