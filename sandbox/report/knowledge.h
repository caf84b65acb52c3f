#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/common/folders.h"
#include "sandbox/report/logline.h"

namespace sandbox::report {

/// A material as the scenario tells it.
struct Planned {
    std::string name, path, module, version; ///< the path with "\" only
    std::string md5;                         ///< where another than the right one is announced
    std::string group, osver, checkApp, checkSys, exec;
    std::string fileVersion; ///< of its version resource; empty for a data file
};

/// A file of the client as the scenario tells it.
struct PlannedFile {
    bool isPe = false;   ///< its version is in its own resource
    std::string version; ///< of a resource
};

/// A fault of the sandbox that took effect.
struct SandboxFault {
    std::optional<std::int64_t> at; ///< ms since 1970
    std::string on;
    std::string words;
    bool keepsAnswer = false; ///< what it met came to the client as it should be
};

/// What the folder of a sandbox run tells beside the log. Empty for a log from elsewhere.
struct Knowledge {
    bool hasScenario = false;
    std::string title;
    std::map<std::string, Planned> materials;    ///< by name
    std::map<std::string, std::string> stored;   ///< file of the storage to material
    std::map<std::string, PlannedFile> files;    ///< of the client at the start, by comparable path
    std::map<std::string, std::string> versions; ///< its version store, likewise
    std::vector<std::string> ofPackage;          ///< comparable paths that the package's setup puts
    std::string clientVersion;                   ///< at the start
    std::string osVersion;
    std::vector<SandboxFault> faults;
    /// Those with "kind" and "at", of other kinds than log, by their time.
    std::vector<nlohmann::json> events;
    std::optional<std::int64_t> clockOffset; ///< ms since 1970, less the log's own clock
    std::vector<std::string> sources;        ///< files that were read, in words
    std::vector<std::string> missing;        ///< what could not be, in words

    const Planned* planned(const std::string& name) const;
    /// The name of the material with that file in the storage, or that hash; empty for none.
    std::string nameOf(const std::string& fileId, const std::string& md5) const;
    /// Whether the observations lie beside the log, so that what they do not have was not.
    bool hasObservations() const { return clockOffset.has_value(); }
    /// A time of the run's files on the log's clock.
    std::optional<std::int64_t> onLogClock(std::int64_t at) const;
};

/// Whether a whole path ends with that one, element by element and without regard to case.
bool endsWithPath(const std::string& path, const std::string& end);

/// All faults that took effect: what each was on, and its words.
std::vector<std::string> faultWords(const Knowledge& known);

/// Reads what is there. Never throws for what files hold.
Knowledge readKnowledge(const Folders& folders, const Log& log);

} // namespace sandbox::report
