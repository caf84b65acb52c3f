#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/common/filefacts.h"
#include "sandbox/doctor/finding.h"
#include "sandbox/doctor/openfiles.h"
#include "sandbox/doctor/places.h"

namespace sandbox::doctor {

/// One entry of filelist.xml, with the attributes that it has.
struct ListEntry {
    std::map<std::string, std::string> attributes;

    std::string text(const char* name) const {
        const auto found = attributes.find(name);
        return found == attributes.end() ? "" : found->second;
    }
};

/// An entry of the padding list.
struct Waiting {
    std::string target;               ///< as it is stored
    std::string file;                 ///< likewise; a leading "\" belongs to some
    std::optional<std::string> toKey; ///< key of the target; none leaves the client's folder
    std::optional<std::string> key;   ///< key of the file in folder update; likewise
};

/// A request to the system for its next start.
struct Delayed {
    std::string from;
    std::string to;                     ///< empty for a delete
    std::optional<std::string> fromKey; ///< none lies outside the client's folder
    std::optional<std::string> toKey;
};

/// What stands in a client's folder and its lists at one moment. Files and targets are found by
/// key: the comparable client path.
struct Snapshot {
    Places places;
    std::map<std::string, FileFacts> files;
    std::set<std::string> unread; ///< keys of what stands and is not known; a folder with all below
    std::optional<std::vector<ListEntry>> list;
    std::optional<nlohmann::json> versions; ///< an object
    std::optional<nlohmann::json> settings; ///< an object
    std::vector<Waiting> padding;
    std::set<std::string> tempNames;                 ///< of the temp list
    std::map<std::string, std::string> channelFiles; ///< of the file channel: key to MD5
    std::map<std::string, std::string> packageFiles; ///< of the run's package, likewise
    std::optional<std::vector<Delayed>> delayed;
    bool mayLackDelayed = false;         ///< the system has requests that are not written yet
    std::set<std::string> scheduledOnce; ///< targets that the log says were left to a restart
    /// Keys of what the cabinets of the run bring beside their files, when its storage is known.
    std::optional<std::set<std::string>> cabinetMembers;
    std::vector<OpenFile> open;
    bool hostRuns = false;

    const FileFacts* fileAt(const std::string& key) const;
    /// Whether something stands there that could not be read: told by itself, and not missing.
    bool isUnknown(const std::string& key) const;
    /// The padding entry of a target whose file waits in folder update.
    const Waiting* waitingFor(const std::string& targetKey) const;
    /// Whether a restart will put, or has put, the target in place, as far as is known.
    bool cameByRestart(const std::string& targetKey) const;
    /// The version that the client sees: of the file itself, or else the store's. Nothing when
    /// the store would be asked and is not known.
    std::optional<std::string> versionOf(const FileFacts& file) const;
    /// The entry of a file in filelist.xml that updates change; null without one.
    const ListEntry* listed(const std::string& key) const;
    /// Whether the list describes the content that stands there.
    bool isListedAsIs(const std::string& key) const;
};

inline constexpr const char* updateFolder = "update\\";
inline constexpr const char* tempFolder = "update\\temp\\";

/// Reads all that there is; what cannot be read goes into the report.
Snapshot takeSnapshot(const Places& places, Report& report);

} // namespace sandbox::doctor
