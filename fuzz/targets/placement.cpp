#include <set>

#include "fuzz/fuzz.h"
#include "platform/posix/delayedmoves.h"
#include "sandbox/platform/heldfile.h"
#include "support/fakehost.h"
#include "updatekelvar/task/xtaskkelvarmove.h"

// A material on its way to its place, and the restart behind. Input: the path that it names, the
// MD5 of the file in its cabinet, words for what else is so, and the stored file in the lines
// behind. Words: "plain" (the stored file is no cabinet), "group" (it belongs to one), "held" (the
// old file is in use).

namespace {

constexpr const char* cabinetName = "0123456789abcdef0123456789abcdef";
constexpr const char* oldFile = "around\\client\\bin\\old.dll";
constexpr const char* otherFile = "around\\beside\\other.dll";

std::set<std::string> entriesBelow(const std::filesystem::path& folder) {
    std::set<std::string> entries;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        entries.insert(entry.path().lexically_relative(folder).generic_string());
    }
    return entries;
}

XMaterialMetaData offeredRow(const std::string& input, std::string& words, std::string& stored) {
    XMaterialMetaData row;
    stored = input;
    row.filePath = fuzz::takeLine(stored);
    row.fileMd5 = fuzz::takeLine(stored);
    words = fuzz::takeLine(stored);
    row.md5 = cabinetName;
    row.version = "1.2.3.4";
    row.dependent = words.find("group") != words.npos ? "group" : "";
    row.nonCab = words.find("plain") != words.npos;
    if (row.nonCab) {
        row.md5 = row.fileMd5 = materials::md5Hex({stored.begin(), stored.end()});
    }
    return row;
}

} // namespace

FUZZ_TARGET(placement) {
    FakeHost host;
    fake::setExecutable(host.clientPath("around\\client\\trayhost.exe"));
    std::string words;
    std::string stored;
    XBatchGetMaterialMetaData list;
    list.materials.push_back(offeredRow(input, words, stored));
    host.has("around\\client\\update\\" + list.materials[0].md5, stored);
    host.has(oldFile, std::string("old"));
    host.has(otherFile, std::string("other"));
    const std::set<std::string> before = entriesBelow(host.folder);

    int finished = 0;
    {
        const sandbox::HeldFile held(words.find("held") != words.npos ? host.diskPath(oldFile)
                                                                      : std::filesystem::path());
        XTaskKelvarMove().check(&list, [&](bool) { ++finished; });
    }
    platform::posix::applyDelayedMoves(host.clientPath("around\\client"));

    fuzz::require(finished == 1, "a run ends once");
    fuzz::require(host.bytesOf(otherFile) == "other", "other files stay");
    for (const std::string& entry : entriesBelow(host.folder)) {
        fuzz::require(before.count(entry) > 0 || entry.starts_with("around/client/"),
                      "nothing leaves the client's folder", entry);
    }
}
