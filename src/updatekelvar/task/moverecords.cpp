#include <algorithm>
#include <cstring>

#include "host/hostmodules.h"
#include "host/log.h"
#include "platform/clock.h"
#include "platform/process.h"
#include "updatekelvar/task/xtaskkelvarmove.h"
#include "utils/filelist.h"
#include "utils/utils.h"

namespace {

/// The virus library's version with the time at which it was put in place.
struct VirusLibRecord {
    char version[XRefresher::IUpdateKelvar::versionSize] = {};
    std::int64_t time = 0; ///< seconds since 1970
};

/// A text that does not fit ends the process: neither a cut version may be stored nor
/// anything written past the end.
template <std::size_t Size>
void copyOrEnd(char (&buffer)[Size], const std::string& text, const char* function) {
    if (text.size() >= Size) {
        log(logFault, __FILE__, __LINE__, function,
            "update plugin, kelvar, task move, version too long, length:", text.size());
        platform::abortProcess();
    }
    text.copy(buffer, text.size()); // a zero is behind it: the record is fresh
}

std::string withBackslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

} // namespace

void XTaskKelvarMove::_updateFileList(const Rows& moved) {
    const std::string appDir = _getAppDir() + "\\";
    std::vector<XNFileItem> items;
    std::map<const XMaterialMetaData*, std::size_t> known; // rows of groups come repeatedly
    for (const XMaterialMetaData* row : moved) {
        if (const auto [place, isNew] = known.emplace(row, items.size()); !isNew) {
            items.push_back(XNFileItem(items[place->second]));
            continue;
        }
        // A file that waits for the restart is described by what stands there today.
        const std::string name = withBackslashes(row->filePath);
        const std::string path = appDir + name;
        items.push_back({name, row->version, row->fileMd5, utils::hasFileVersion(path.c_str()),
                         static_cast<std::uint64_t>(utils::getFileSize(path.c_str()))});
    }
    XNFileListHelper().updateFileListItems(items);
}

bool XTaskKelvarMove::_saveFileVersion(const XMaterialMetaData& row) {
    return utils::setDataFileVersion(withBackslashes(row.filePath), row.version);
}

bool XTaskKelvarMove::_saveChannelVersion(const std::string& version) {
    return utils::setDataFileVersion("update\\version.dat", version);
}

bool XTaskKelvarMove::_saveVirusLibVersion(const std::string& version) {
    VirusLibRecord record;
    copyOrEnd(record.version, version, XLOG_SIGNATURE);
    record.time = platform::wallClock();
    if (XRefresher::IUpdateKelvar* service = hostmodules::getUpdateKelvar()) {
        service->setVersion(record.version);
        service->release();
    }
    return true;
}

bool XTaskKelvarMove::_notifyVersion(const std::string& version) {
    NC::KelvarVersionRecord record;
    // Without a terminating zero when the text fills the record; never past its end.
    std::memcpy(record.text, version.data(), std::min(version.size(), sizeof(record.text)));
    if (NC::INotificationCenter* center = hostmodules::getNotificationCenter()) {
        center->post(NC::kelvarVersionType, &record, sizeof(record));
    }
    return true;
}
