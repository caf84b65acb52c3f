#include "host/log.h"
#include "platform/files.h"
#include "platform/lasterror.h"
#include "updatekelvar/task/materialnames.h"
#include "updatekelvar/task/xtaskkelvarmove.h"
#include "utils/utils.h"

bool XTaskKelvarMove::_updatePadding(const std::string& updateDir, const TextMap& newPadding,
                                     const TextMap& succ) {
    XLOG(logProgress, "update plugin, update padding, padding count:", newPadding.size(),
         ", succ count:", succ.size());
    if (newPadding.empty() && succ.empty()) {
        return false;
    }
    TextMap result = newPadding;
    TextMap old;
    utils::loadPaddingFileList(old);
    XLOG(logProgress, "update plugin, update padding, load padding, count:", old.size());
    XLOG(logProgress, "update plugin, update padding, new padding, count:", newPadding.size());
    _dropUnsafe(old);
    _dropOvertaken(updateDir, succ, old);
    _dropInvalid(updateDir, old);
    for (const auto& [target, waiting] : old) {
        if (newPadding.count(target) == 0) {
            result.emplace(target, waiting); // goes on waiting
            continue;
        }
        // The new entry wins. Where both name the same file the delete takes the very
        // file that the new entry waits with: the replace at the restart then finds
        // nothing, and the entry ends as invalid in a later run.
        const std::string path = updateDir + waiting;
        XLOG(logProgress, "update plugin, update padding, dupl padding, delete:", path,
             ", lasterror:", platform::lastError()); // taken before the delete
        platform::removeFile(path);
    }
    XLOG(logProgress, "update plugin, update padding, save padding, count:", result.size());
    utils::savePaddingFileList(result); // an empty result leaves the older text there
    return true;
}

void XTaskKelvarMove::_dropUnsafe(TextMap& old) {
    for (auto entry = old.begin(); entry != old.end();) {
        // The file of an expanded cabinet is named with a backslash in front.
        const std::size_t start = entry->second.starts_with('\\') ? 1 : 0;
        if (materialnames::isPlainName(entry->second.substr(start))) {
            ++entry;
            continue;
        }
        XLOG(logProgress, "update plugin, update padding, bad name, remove:", entry->first,
             ", name:", entry->second);
        entry = old.erase(entry);
    }
}

void XTaskKelvarMove::_dropOvertaken(const std::string& updateDir, const TextMap& succ,
                                     const TextMap& old) {
    for (const auto& [target, waiting] : old) {
        if (succ.count(target) == 0) {
            continue;
        }
        const std::string path = updateDir + waiting;
        platform::removeFile(path);
        XLOG(logProgress, "update plugin, update padding, move succ, delete:", path,
             ", lasterror:", platform::lastError());
    }
}

void XTaskKelvarMove::_dropInvalid(const std::string& updateDir, TextMap& old) {
    for (auto entry = old.begin(); entry != old.end();) {
        if (platform::fileExists(updateDir + entry->second)) {
            ++entry;
            continue;
        }
        XLOG(logProgress, "update plugin, update padding, invalid padding, remove:", entry->first);
        entry = old.erase(entry);
    }
}
