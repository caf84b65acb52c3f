#include <algorithm>
#include <set>

#include "sandbox/cli/comparison.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* anyValue = "<any>";

/// Files that other comparisons look at.
std::set<std::string> comparedElsewhere(const Comparison& comparison) {
    std::set<std::string> targets;
    for (const char* member : {"contents", "fileVersions"}) {
        const Json told = comparison.expect.value(member, Json::object());
        for (const auto& [path, value] : told.items()) {
            targets.insert(comparablePath(path));
        }
    }
    for (const BuiltMaterial& material : comparison.materials) {
        if (comparison.goalOf(material).state == "placed") {
            targets.insert(comparablePath(material.path));
        }
    }
    return targets;
}

/// A stored text that holds JSON is compared by its value.
bool sameSetting(const Json& expected, const Json& stored) {
    if (expected == anyValue) {
        return !stored.is_null();
    }
    if (expected == Json(std::string()) && stored.is_null()) {
        return true; // an empty text reads like one that was never written
    }
    if ((expected.is_array() || expected.is_object()) && stored.is_string()) {
        return Json::parse(stored.get<std::string>(), nullptr, false) == expected;
    }
    return expected == stored;
}

void compareVersions(Comparison& comparison) {
    std::set<std::string> paths;
    for (const auto* store : {&comparison.goals.versions, &comparison.now.versions}) {
        for (const auto& [path, version] : *store) {
            paths.insert(path);
        }
    }
    const auto versionOf = [](const std::map<std::string, std::string>& store,
                              const std::string& path) {
        const auto found = store.find(path);
        return found == store.end() ? "none" : found->second;
    };
    for (const std::string& path : paths) {
        const std::string expected = versionOf(comparison.goals.versions, path);
        const std::string got = versionOf(comparison.now.versions, path);
        if (expected != got) {
            comparison.differ("version store, " + path, expected, got);
        }
    }
}

void compareSettings(Comparison& comparison) {
    for (const auto& [key, expected] : comparison.goals.settings.items()) {
        const Json stored = comparison.now.settings.value(key, Json());
        if (!sameSetting(expected, stored)) {
            comparison.differ("setting " + key, expected.dump(), stored.dump());
        }
    }
    for (const auto& [key, stored] : comparison.now.settings.items()) {
        const bool told = comparison.goals.settings.contains(key) || isCheckTime(key);
        // An empty text reads like one that was never written.
        const bool blank = stored.is_string() && stored.get_ref<const std::string&>().empty();
        if (!told && !blank) {
            comparison.differ("setting " + key, "none", stored.dump());
        }
    }
}

void comparePending(Comparison& comparison) {
    std::size_t deletes = 0;
    for (const PendingMove& move : comparison.now.pending.moves) {
        deletes += move.to.empty() ? 1 : 0;
    }
    const std::size_t replaces = comparison.now.pending.moves.size() - deletes;
    for (const std::string& fault : comparison.now.pending.faults) {
        comparison.differ("delayed moves", "no faults", fault);
    }
    const auto words = [](std::size_t r, std::size_t d) {
        return std::to_string(r) + " replaces, " + std::to_string(d) + " deletes";
    };
    if (replaces != comparison.goals.replaces || deletes != comparison.goals.deletes) {
        comparison.differ("delayed moves",
                          words(comparison.goals.replaces, comparison.goals.deletes),
                          words(replaces, deletes));
    }
}

void compareUpdateFolder(Comparison& comparison) {
    std::vector<std::string> names;
    for (const auto& [name, file] : comparison.now.update) {
        names.push_back(name);
    }
    const std::vector<std::string>& expected = comparison.goals.update;
    std::vector<std::string> missing;
    std::vector<std::string> surplus;
    std::set_difference(expected.begin(), expected.end(), names.begin(), names.end(),
                        std::back_inserter(missing));
    std::set_difference(names.begin(), names.end(), expected.begin(), expected.end(),
                        std::back_inserter(surplus));
    if (!missing.empty()) {
        comparison.differ("folder update", joined(missing), "no such files");
    }
    if (!surplus.empty()) {
        comparison.differ("folder update", "no other files", joined(surplus));
    }
}

} // namespace

bool isCheckTime(const std::string& key) {
    return key == "KEY_UPDATE_KELVAR_LAST_CHECK_TIME" || key == "KEY_UPDATE_PKG_LAST_CHECK_TIME";
}

void compareFiles(Comparison& comparison) {
    const std::set<std::string> targets = comparedElsewhere(comparison);
    const auto changed = [&](const std::string& path) {
        const auto was = comparison.before.files.find(path);
        const auto is = comparison.now.files.find(path);
        return was == comparison.before.files.end() || is == comparison.now.files.end() ||
               was->second.md5 != is->second.md5;
    };
    std::set<std::string> paths;
    for (const auto* files : {&comparison.before.files, &comparison.now.files}) {
        for (const auto& [path, file] : *files) {
            paths.insert(path);
        }
    }
    for (const std::string& path : paths) {
        if (targets.count(path) == 0 && changed(path)) {
            comparison.differ("client file " + path, "as it was", "changed");
        }
    }
    compareUpdateFolder(comparison);
    compareContents(comparison);
}

void compareStores(Comparison& comparison) {
    compareVersions(comparison);
    compareSettings(comparison);
    comparePending(comparison);
}

} // namespace sandbox
