#include <algorithm>
#include <set>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/dottedversion.h"
#include "sandbox/doctor/checks.h"
#include "sandbox/materials/content.h"

namespace sandbox::doctor {
namespace {

constexpr const char* attributes[] = {"Name", "Version", "MD5", "IsPE", "Size"};
/// Its entry is made when a package is offered, and is of that moment.
constexpr const char* versionFile = "orvsecurityver.dll";

bool isNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

/// A number as it is usually written; longer ones than any size stay as they are.
std::string withoutZeros(const std::string& digits) {
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1));
}

/// Scenarios fill their list up with entries of no file, whose MD5 is that of the name.
bool isFiller(const ListEntry& entry) {
    const std::string name = entry.text("Name");
    return name.rfind("components\\part", 0) == 0 &&
           entry.text("MD5") == materials::md5Hex({name.begin(), name.end()});
}

/// What is wrong with the entry by itself; empty when nothing is.
std::string damageOf(const ListEntry& entry) {
    for (const char* name : attributes) {
        if (entry.attributes.count(name) == 0) {
            return std::string("has no ") + name;
        }
    }
    if (entry.text("Name").empty()) {
        return "has an empty Name";
    }
    if (!isMd5(entry.text("MD5"))) {
        return "has an MD5 that is none: \"" + entry.text("MD5") + "\"";
    }
    return isNumber(entry.text("Size"))
               ? ""
               : "has a Size that is no number: \"" + entry.text("Size") + "\"";
}

/// One entry against the file that it names.
class Comparison {
public:
    Comparison(const Snapshot& seen, const ListEntry& listed, const FileFacts& stands,
               Report& output)
        : snapshot(seen), entry(listed), file(stands), report(output),
          key(comparablePath(stands.path)) {}

    void run() {
        if (key == versionFile && compareVersions(entry.text("Version"), file.version) < 0) {
            return;
        }
        if (lowered(entry.text("MD5")) != file.md5) {
            if (!isExplained()) {
                add(Code::listContent, "content", entry.text("MD5"), file.md5);
            }
            return; // what differs beside the content follows from it
        }
        // The list is written before the restart, with size and kind of what stood there then.
        if (!snapshot.cameByRestart(key)) {
            compareShape();
        }
        compareVersion();
    }

private:
    /// A file that waits for the restart is listed as it will be; those of the file channel and
    /// of the sandbox's package are replaced without the list.
    bool isExplained() const {
        for (const auto* files : {&snapshot.channelFiles, &snapshot.packageFiles}) {
            const auto replaced = files->find(key);
            if (replaced != files->end() && replaced->second == file.md5) {
                return true;
            }
        }
        const bool isScheduled = std::any_of(
            snapshot.padding.begin(), snapshot.padding.end(), [&](const Waiting& waiting) {
                return waiting.toKey == key &&
                       waiting.key == updateFolder + lowered(entry.text("MD5"));
            });
        return isScheduled;
    }

    void compareShape() {
        if (std::to_string(file.size) != withoutZeros(entry.text("Size"))) {
            add(Code::listSize, "size", entry.text("Size"), std::to_string(file.size));
        }
        const bool isImage = !file.version.empty();
        if (isImage != (entry.text("IsPE") == "true")) {
            add(Code::listKind, "IsPE", entry.text("IsPE"), isImage ? "true" : "false");
        }
    }

    void compareVersion() {
        const auto version = snapshot.versionOf(file);
        const std::string listed = entry.text("Version");
        if (version && listed != *version && compareVersions(listed, *version) != 0) {
            add(Code::listVersion, "version", listed.empty() ? "none" : listed,
                version->empty() ? "none" : *version);
        }
    }

    void add(Code code, const char* what, const std::string& listed, const std::string& stands) {
        report.add(code, file.path,
                   file.path + ": " + what + " is listed as " + listed + " and is " + stands);
    }

    const Snapshot& snapshot;
    const ListEntry& entry;
    const FileFacts& file;
    Report& report;
    std::string key;
};

void checkEntry(const Snapshot& snapshot, const ListEntry& entry, const std::string& name,
                Report& report) {
    const auto below = pathBelow(name);
    const std::string key = below ? comparablePath(*below) : "";
    const FileFacts* file = snapshot.fileAt(key);
    if (!below) {
        report.add(Code::listOutside, name, name + " is listed and lies outside the client");
    } else if (const std::string damage = damageOf(entry); !damage.empty()) {
        report.add(Code::listDamaged, name, "the entry of " + name + " " + damage);
    } else if (file != nullptr) {
        Comparison(snapshot, entry, *file, report).run();
    } else if (snapshot.waitingFor(key) == nullptr && !snapshot.isUnknown(key)) {
        report.add(Code::listFileMissing, name, name + " is listed and is not there");
    }
}

} // namespace

void checkFileList(const Snapshot& snapshot, Report& report) {
    if (!snapshot.list) {
        return;
    }
    std::set<std::string> names;
    std::size_t number = 0;
    for (const ListEntry& entry : *snapshot.list) {
        ++number;
        const std::string name = entry.text("Name");
        if (name.empty()) {
            const std::string which = "entry " + std::to_string(number);
            report.add(Code::listDamaged, which, which + " of filelist.xml " + damageOf(entry));
        } else if (!names.insert(comparablePath(name)).second) {
            report.add(Code::listDouble, name, name + " is listed twice");
        } else if (!isFiller(entry)) {
            ++report.listed;
            checkEntry(snapshot, entry, name, report);
        }
    }
}

} // namespace sandbox::doctor
