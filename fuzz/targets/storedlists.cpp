#include <nlohmann/json.hpp>

#include "fuzz/fuzz.h"
#include "host/settings.h"
#include "support/fakehost.h"
#include "updatefile/updatefilelist.h"
#include "updatepkg/xupdatepkgtrace.h"
#include "utils/utils.h"

// The lists in the client's settings, where other writers' texts may lie.

namespace {

struct StartedTrace final : XUpdatePkgTrace {};

/// One of the Kelvar lists. Throws nothing but the library's exceptions, and never for a list
/// that it saved itself.
template <class List>
void roundTrip(FakeHost& host, const char* key, const std::string& text, void (*load)(List&),
               void (*save)(const List&), const List& before) {
    host.settings.put(key, text);
    List list = before;
    try {
        load(list);
    } catch (const nlohmann::json::exception&) {
        fuzz::require(list == before, "a list that does not load changes nothing");
        return;
    }
    fuzz::require(text.empty() || nlohmann::json::accept(text), "what is no JSON does not load");
    List fresh;
    load(fresh);
    fuzz::require(list == (text.empty() ? before : fresh), "a list that loads replaces the other");
    save(list);
    fuzz::require(!list.empty() || host.settings.text(key) == text,
                  "no list at all leaves the stored text");
    List again;
    load(again);
    fuzz::require(again == list || list.empty(), "a saved list loads the same");
}

/// A start of the package channel takes any text.
void startsWith(FakeHost& host, const std::string& text) {
    host.settings.put(settingkeys::upgrade, text);
    host.settings.put(settingkeys::ignoreVersionList, text);
    const StartedTrace trace;
    fuzz::require(!trace.isIgnoredVersion(""), "no version is never ignored");
    const std::string stored = trace.getData()->toStored();
    host.settings.put(settingkeys::upgrade, stored);
    fuzz::require(StartedTrace().getData()->toStored() == stored, "an offer survives a start");
}

void keepsFileList(FakeHost& host, const std::string& text) {
    host.settings.put(settingkeys::fileList, text);
    std::shared_ptr<XUpdateFileList> list;
    loadFileList(list);
    for (const XFileTypeName& row : fileTypeNames) {
        bool isThere = false;
        for (std::size_t i = 0; i < list->size(); ++i) {
            isThere = isThere || (*list)[i]->fileType == row.fileType;
        }
        fuzz::require(isThere, "every known file has an entry", row.name);
    }
    saveFileList(list);
    const std::string stored = host.settings.text(settingkeys::fileList);
    loadFileList(list);
    fuzz::require(list->toStored() == stored, "a stored file list loads the same", stored);
}

} // namespace

FUZZ_TARGET(storedlists) {
    FakeHost host;
    const std::string text = fuzz::zeroTerminated(input);
    roundTrip<std::vector<std::string>>(host, settingkeys::kelvarTempFileList, text,
                                        utils::loadTempFileList, utils::saveTempFileList, {"old"});
    roundTrip<std::map<std::string, std::string>>(
        host, settingkeys::kelvarPaddingFileList, text, utils::loadPaddingFileList,
        utils::savePaddingFileList, {{"old target", "old file"}});
    startsWith(host, text);
    keepsFileList(host, text);
}
