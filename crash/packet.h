#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "crash/durablestores.h"
#include "sandbox/server/offer.h"

/// What stands on a client and what the update platform offers it.
namespace crash {

/// A file that the packet replaces. Paths are the client's, relative to its folder.
struct Target {
    std::string path = {};
    std::string before = {}; ///< bytes; none when the file is new
    std::string after = {};
    std::string group = {};
    bool isImage = true; ///< else the version store has its version
    bool isRefused = false;
    std::string program = {}; ///< started once it is in place
};

struct Packet {
    std::string name;
    std::vector<Target> targets;
    std::vector<std::string> held;                            ///< targets in use until the restart
    std::map<std::string, std::string> files;                 ///< of the client, by path
    std::map<std::string, std::string> storage;               ///< bytes, by file id
    std::vector<std::pair<std::string, std::string>> delayed; ///< accepted by the system before
    std::map<std::string, std::string> names;                 ///< of hashes, for people
    sandbox::Offer offer;
    Stored stored;
};

inline constexpr const char* oldVersion = "1.0.0.1001";
inline constexpr const char* oldMd5 = "old"; ///< in filelist.xml, as the setup left it
inline constexpr const char* oldSize = "1";
inline constexpr const char* newVersion = "2.0.0.2002";
inline constexpr const char* newVirusLibVersion = "2026-11-20";
inline constexpr const char* versionKey = "update\\version.dat";
inline constexpr const char* virusLibModule = "/orvviruslib";
inline constexpr const char* virusLibKey = "update\\virtuslib.dat";

/// Files of every kind that all can be placed or wait: plain, new, data, in a cabinet, in use,
/// a group, a group that waits, of the virus library; one whose older form waits for the
/// restart already, and a foreign one that does.
Packet wholePacket();

/// A group with a refused member behind one that is placed and one that is in use.
Packet refusedPacket();

/// The least that has every step: a file in place, one in a cabinet and one in use.
Packet smallPacket();

} // namespace crash
