#include <pugixml.hpp>

#include "fuzz/fuzz.h"
#include "support/fakehost.h"
#include "utils/filelist.h"
#include "utils/utils.h"

// The list of installed files, which other programs write too. Input: name, version and MD5 of a
// placed file, and the document in the lines behind.

namespace {

constexpr const char* listPath = "home\\OrvSecurity\\config\\uninst\\filelist.xml";

pugi::xml_document loaded(const std::string& text, bool* succ) {
    pugi::xml_document doc;
    *succ = static_cast<bool>(doc.load_buffer(text.data(), text.size()));
    return doc;
}

/// The first entry of that name, in any case.
pugi::xml_node entryNamed(const pugi::xml_document& doc, const std::string& name) {
    for (const pugi::xml_node file : doc.child("Root").child("FileList").children("File")) {
        if (utils::toLower(file.attribute("Name").as_string()) == utils::toLower(name)) {
            return file;
        }
    }
    return {};
}

std::size_t countEntries(const pugi::xml_document& doc) {
    const auto files = doc.child("Root").child("FileList").children("File");
    return static_cast<std::size_t>(std::distance(files.begin(), files.end()));
}

void showsItem(const pugi::xml_node& entry, const XNFileItem& item) {
    const auto holds = [&](const char* name, const std::string& value) {
        const pugi::xml_attribute found = entry.attribute(name);
        return found.empty() || found.as_string() == value;
    };
    fuzz::require(holds("Version", item.version) && holds("MD5", item.md5) &&
                      holds("IsPE", item.isPE ? "true" : "false") &&
                      holds("Size", std::to_string(item.size)),
                  "an entry tells of its file");
}

void keepsTheListTrue(const std::string& before, const std::string& after, const XNFileItem& item) {
    bool wasDocument = false;
    bool isDocument = false;
    const pugi::xml_document old = loaded(before, &wasDocument);
    if (!wasDocument) {
        fuzz::require(after == before, "what does not load stays as it is");
        return;
    }
    const pugi::xml_document doc = loaded(after, &isDocument);
    fuzz::require(isDocument, "what was saved loads", after);
    if (!old.child("Root").child("FileList")) {
        fuzz::require(countEntries(doc) == 0, "without a list no entry is made", after);
        return;
    }
    const pugi::xml_node entry = entryNamed(doc, item.name);
    fuzz::require(!entry.empty(), "the file has an entry", after);
    showsItem(entry, item);
    const std::size_t added = entryNamed(old, item.name).empty() ? 1 : 0;
    fuzz::require(countEntries(doc) == countEntries(old) + added, "the others stay", after);
}

} // namespace

FUZZ_TARGET(filelist) {
    std::string document = input;
    XNFileItem item;
    item.name = fuzz::zeroTerminated(fuzz::takeLine(document));
    item.version = fuzz::zeroTerminated(fuzz::takeLine(document));
    item.md5 = fuzz::zeroTerminated(fuzz::takeLine(document));
    item.isPE = input.size() % 2 == 0;
    item.size = 5'000'000'000;
    if (item.name.empty()) {
        return; // no file is placed without a name
    }
    FakeHost host;
    host.homeDirectory = host.clientPath("home");
    host.has(listPath, document);
    XNFileListHelper().updateFileListItems({item});
    const std::string updated = host.bytesOf(listPath);
    keepsTheListTrue(document, updated, item);
    XNFileListHelper().updateFileListItems({item});
    XNFileListHelper().checkDiffAndUpdate({item});
    fuzz::require(host.bytesOf(listPath) == updated, "what is true already stays as it is",
                  host.bytesOf(listPath));
}
