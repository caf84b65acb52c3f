#include <algorithm>
#include <cctype>
#include <set>

#include "sandbox/cli/comparison.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* versionFile = "orvsecurityver.dll";

std::string wordsOf(const ListedFile& entry) {
    return entry.version + " " + entry.md5 + " PE " + entry.isPe + " " + entry.size + " bytes";
}

/// The entry that a moved material leaves: its own version and digest, but kind and size
/// of what stands at the target when the list is written.
ListedFile entryFor(const Comparison& comparison, const BuiltMaterial& material) {
    ListedFile entry;
    entry.version = material.plan.version;
    entry.md5 = material.fileMd5;
    entry.isPe = "false";
    const auto file = comparison.now.files.find(comparablePath(material.path));
    if (file != comparison.now.files.end()) {
        entry.isPe = file->second.peVersion.empty() ? "false" : "true";
        entry.size = std::to_string(file->second.size);
    }
    return entry;
}

/// The entry of the module that tells the client's version, as a check of the package
/// channel finds it: before a setup that the same run starts, or behind it.
ListedFile versionFileEntry(const Comparison& comparison, const std::string& version) {
    const FileState* was = comparison.before.fileAt(versionFile);
    const FileState* is = comparison.now.fileAt(versionFile);
    const FileState* file = was != nullptr && was->peVersion == version ? was : is;
    if (file == nullptr) {
        return {};
    }
    std::string md5 = file->md5; // the plug-in writes its own digests in upper case
    std::transform(md5.begin(), md5.end(), md5.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return {versionFile, version, md5, "true", std::to_string(file->size)};
}

void compareEntry(Comparison& comparison, const std::string& key, ListedFile expected) {
    const auto found = comparison.now.listed.find(key);
    if (found == comparison.now.listed.end()) {
        comparison.differ("filelist.xml, " + key, wordsOf(expected), "no entry");
        return;
    }
    expected.name = found->second.name;
    if (expected.size.empty()) {
        expected.size = found->second.size; // of a file that is not there: no size is right
    }
    if (!(found->second == expected)) {
        comparison.differ("filelist.xml, " + key, wordsOf(expected), wordsOf(found->second));
    }
}

} // namespace

void compareFileList(Comparison& comparison) {
    const Json expect = comparison.expect.value("fileList", Json::object());
    const Json names = expect.value("of", Json::array());
    std::set<std::string> written;
    for (const BuiltMaterial& material : comparison.materials) {
        if (isNamed(names, material.plan.name)) {
            const std::string key = comparablePath(material.path);
            written.insert(key);
            compareEntry(comparison, key, entryFor(comparison, material));
        }
    }
    if (expect.contains("versionFile")) {
        written.insert(versionFile);
        compareEntry(comparison, versionFile,
                     versionFileEntry(comparison, expect.at("versionFile").get<std::string>()));
    }
    for (const auto& [key, entry] : comparison.before.listed) {
        if (written.count(key) == 0) {
            compareEntry(comparison, key, entry);
        }
    }
    const std::size_t entries = expect.value("entries", comparison.before.listed.size());
    if (comparison.now.listed.size() != entries) {
        comparison.differ("filelist.xml, entries", std::to_string(entries),
                          std::to_string(comparison.now.listed.size()));
    }
}

} // namespace sandbox
