#include <map>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/dottedversion.h"
#include "sandbox/doctor/checks.h"

namespace sandbox::doctor {
namespace {

constexpr const char* channelEntry = "update\\version.dat";
/// Its text is the virus library's own, often a date.
constexpr const char* virusEntry = "update\\virtuslib.dat";

bool isWellFormed(const std::string& version) {
    return version.size() <= longestVersion && (version.empty() || isDottedVersion(version));
}

void checkFile(const Snapshot& snapshot, const std::string& path, const std::string& version,
               Report& report) {
    const std::string key = comparablePath(path);
    const FileFacts* file = snapshot.fileAt(key);
    if (file == nullptr && snapshot.waitingFor(key) == nullptr && !snapshot.isUnknown(key)) {
        report.add(Code::versionFileMissing, path,
                   path + " has version " + version + " in the store and is not there");
    } else if (file != nullptr && !file->version.empty() &&
               compareVersions(file->version, version) != 0) {
        report.add(Code::versionShadowed, path,
                   path + " has version " + version + " in the store and is itself of " +
                       file->version);
    }
}

void checkEntry(const Snapshot& snapshot, const std::string& path, const std::string& version,
                Report& report) {
    const std::string key = comparablePath(path);
    const auto below = pathBelow(path);
    if (!below || *below != path || path.find('/') != std::string::npos) {
        report.add(Code::versionKey, path, "the version store's name \"" + path + "\" is no path");
    } else if (key == channelEntry) {
        if (!isToldToPlatform(version)) {
            report.add(Code::channelVersion, path,
                       path + ": the version " + version + " is not told to the platform");
        }
    } else if (key != virusEntry && !isWellFormed(version)) {
        report.add(Code::versionForm, path, path + " has version \"" + version + "\" in the store");
    } else if (key != virusEntry) {
        checkFile(snapshot, path, version, report);
    }
}

} // namespace

void checkVersions(const Snapshot& snapshot, Report& report) {
    if (!snapshot.versions) {
        return;
    }
    std::map<std::string, std::string> names; // by key
    for (const auto& [path, version] : snapshot.versions->items()) {
        const auto [other, isNew] = names.emplace(comparablePath(path), path);
        if (!version.is_string()) {
            report.add(Code::versionForm, path, path + " has a version that is no text");
        } else if (!isNew) {
            report.add(Code::versionKey, path,
                       "the version store has " + other->second + " and " + path);
        } else {
            checkEntry(snapshot, path, version.get<std::string>(), report);
        }
    }
}

} // namespace sandbox::doctor
