#include <algorithm>
#include <set>
#include <utility>

#include "sandbox/cli/comparison.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

/// What the servers have for the paths of a client.
class OnOffer {
public:
    explicit OnOffer(const Comparison& comparison) {
        for (const BuiltMaterial& material : comparison.materials) {
            contents[comparablePath(material.path)] = material.fileMd5;
        }
        for (const OfferedFile& file : comparison.upgrade.offer.files) {
            contents[comparablePath(file.name)] = file.md5;
        }
        if (comparison.upgrade.offer.package) {
            packageVersion = comparison.upgrade.offer.package->version;
        }
    }

    /// Whether the file is as a server has it; those of the package are told by its version.
    bool has(const std::string& path, const FileState& file) const {
        const auto found = contents.find(path);
        return (found != contents.end() && found->second == file.md5) ||
               (!packageVersion.empty() && file.peVersion == packageVersion);
    }

    const std::map<std::string, std::string>& all() const { return contents; }

private:
    std::map<std::string, std::string> contents; ///< hash by comparable path
    std::string packageVersion;
};

const FileState* fileOf(const std::map<std::string, FileState>& files, const std::string& path) {
    const auto found = files.find(path);
    return found == files.end() ? nullptr : &found->second;
}

/// Whether the scenario knows that anything may stand there.
bool isOpen(const Comparison& comparison, const std::string& path) {
    const Json open = comparison.expect.value("anything", Json::array());
    return std::any_of(open.begin(), open.end(), [&](const Json& name) {
        return comparablePath(name.get<std::string>()) == path;
    });
}

/// No file is anything but the one that stood there or the one that is on offer.
void compareEachFile(Comparison& comparison, const OnOffer& offer) {
    for (const auto& [path, file] : comparison.now.files) {
        if (isOpen(comparison, path)) {
            continue;
        }
        const FileState* was = fileOf(comparison.before.files, path);
        if ((was == nullptr || was->md5 != file.md5) && !offer.has(path, file)) {
            comparison.differ("client file " + path, "as it was or as on offer", "something else");
        }
    }
    for (const auto& [path, file] : comparison.before.files) {
        if (fileOf(comparison.now.files, path) == nullptr) {
            comparison.differ("client file " + path, "as it was or as on offer", "nothing");
        }
    }
}

/// What is on offer and does not stand in its place.
std::set<std::string> missingFiles(const Comparison& comparison, const OnOffer& offer) {
    std::set<std::string> missing;
    for (const auto& [path, md5] : offer.all()) {
        const FileState* file = fileOf(comparison.now.files, path);
        if (file == nullptr || file->md5 != md5) {
            missing.insert(path);
        }
    }
    return missing;
}

/// A file that waits for the restart counts as in place where versions are told.
std::set<std::string> lackingFiles(const Comparison& comparison, std::set<std::string> missing) {
    for (const auto& [target, waiting] : comparison.now.padding()) {
        missing.erase(comparablePath(target));
    }
    return missing;
}

std::string versionIn(const std::map<std::string, std::string>& store, const std::string& path) {
    const auto found = store.find(path);
    return found == store.end() ? "none" : found->second;
}

/// A version is the old one, or the told one with what it stands for in place: its own file, or
/// for a path that no file on offer has, all of them.
void compareEachVersion(Comparison& comparison, const OnOffer& offer,
                        const std::set<std::string>& missing, bool mustBeTold) {
    const Json versions = comparison.expect.value("versions", Json::object());
    std::map<std::string, std::string> told;
    for (const auto& [path, version] : versions.items()) {
        told[comparablePath(path)] = version.get<std::string>();
    }
    std::set<std::string> paths;
    for (const auto* store :
         {&std::as_const(told), &comparison.now.versions, &comparison.before.versions}) {
        for (const auto& [path, version] : *store) {
            paths.insert(path);
        }
    }
    for (const std::string& path : paths) {
        const std::string is = versionIn(comparison.now.versions, path);
        const std::string was = versionIn(comparison.before.versions, path);
        const bool isTold = told.count(path) > 0 && is == told.at(path);
        const bool stands =
            offer.all().count(path) > 0 ? missing.count(path) == 0 : missing.empty();
        const bool mustChange = mustBeTold && told.count(path) > 0;
        if (!(isTold && stands) && (mustChange || is != was)) {
            comparison.differ("version store, " + path, mustChange ? told.at(path) : was, is);
        }
    }
}

} // namespace

void compareWhole(Comparison& comparison, bool mustBeComplete) {
    const OnOffer offer(comparison);
    const std::set<std::string> missing = missingFiles(comparison, offer);
    compareEachFile(comparison, offer);
    compareEachVersion(comparison, offer, lackingFiles(comparison, missing), mustBeComplete);
    if (mustBeComplete) {
        for (const std::string& path : missing) {
            comparison.differ("client file " + path, "as on offer", "not so");
        }
        for (const PendingMove& move : comparison.now.pending.moves) {
            if (!move.to.empty()) {
                comparison.differ("delayed moves", "no replaces", "one of " + move.to);
            }
        }
    }
}

} // namespace sandbox
