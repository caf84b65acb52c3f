#include <cstring>
#include <utility>

#include "host/log.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "updatekelvar/task/materialnames.h"
#include "updatekelvar/task/xtaskkelvarfetch.h"
#include "utils/utils.h"

namespace {

using MaterialMeta = std::shared_ptr<XBatchGetMaterialMetaData>;

constexpr const char* servicePackMarker = "orvsp.dat";

/// A new list of the rows that `keep` says yes to, in their order. The old one is left empty:
/// ten thousand rows are many megabytes, and nobody looks at them again.
template <class Keep>
void filterRows(const MaterialMeta& in, MaterialMeta& out, Keep keep) {
    auto kept = std::make_shared<XBatchGetMaterialMetaData>();
    std::vector<XMaterialMetaData> rows = std::exchange(in->materials, {});
    for (XMaterialMetaData& row : rows) {
        if (keep(row)) {
            kept->materials.push_back(std::move(row));
        }
    }
    out = kept;
}

bool fitsAppVersion(const XMaterialMetaData& row) {
    return row.extends.empty() || !row.checkApp || row.checkApp->check();
}

bool fitsOSVersion(const XMaterialMetaData& row, const std::string& osVersion) {
    if (row.extends.empty()) {
        return true;
    }
    if (!row.osver.empty()) { // one exact version; then the condition is not asked
        return utils::compareVersion(row.osver, osVersion) == 0;
    }
    return !row.checkSys || row.checkSys->check();
}

/// Whether the row brings a file that is not there, or a newer version of it.
bool isNewerThanFile(const XMaterialMetaData& row, const std::string& appDir) {
    if (appDir.empty() || (!row.filePath.empty() && !materialnames::staysBelow(row.filePath))) {
        return true; // nothing outside is looked at; the move refuses the row
    }
    if (!platform::fileExists(appDir + "\\" + row.filePath)) {
        return true;
    }
    bool isFileVersion = false;
    const std::string version = utils::getFileVersion(row.filePath.c_str(), &isFileVersion);
    return utils::compareVersion(row.version, version) > 0;
}

} // namespace

void XTaskKelvarFetch::_filterMaterialMetaFromAppVer(const MaterialMeta& in, MaterialMeta& out) {
    filterRows(in, out, [](const XMaterialMetaData& row) {
        const bool keep = fitsAppVersion(row);
        if (!keep) {
            XLOG(logProgress,
                 "update plugin, kelvar, task fetch, filter app ver faild, name:", row.md5);
        }
        return keep;
    });
}

void XTaskKelvarFetch::_filterMaterialMetaFromOSVer(const MaterialMeta& in, MaterialMeta& out) {
    filterRows(in, out, [osVersion = utils::getOSVersion(false)](const XMaterialMetaData& row) {
        const bool keep = fitsOSVersion(row, osVersion);
        if (!keep) {
            XLOG(logProgress,
                 "update plugin, kelvar, task fetch, filter os ver faild, name:", row.md5);
        }
        return keep;
    });
}

void XTaskKelvarFetch::_filterMaterialMetaFromFileVer(const MaterialMeta& in, MaterialMeta& out) {
    std::string appDir;
    _getAppDir(appDir);
    filterRows(in, out, [&appDir](const XMaterialMetaData& row) {
        const bool keep = isNewerThanFile(row, appDir);
        if (!keep) {
            XLOG(logProgress,
                 "update plugin, kelvar, task fetch, filter file ver faild, name:", row.md5);
        }
        return keep;
    });
}

void XTaskKelvarFetch::_hasSpMaterial(const MaterialMeta& in, bool& out) {
    out = false;
    for (const XMaterialMetaData& row : in->materials) {
        const std::string name = utils::toLower(platform::fileNameOf(row.filePath));
        if (std::strcmp(name.c_str(), servicePackMarker) == 0) {
            out = true;
            return;
        }
    }
}

void XTaskKelvarFetch::_getVirusLibVersion(const FullPacketDiff& diff, std::string& out) {
    if (!diff) {
        return;
    }
    for (const XModuleCouple& couple : diff->modules) {
        if (std::strcmp(couple.module.id.c_str(), virusLibModule) == 0) {
            out = couple.targetVersion;
            return;
        }
    }
}

void XTaskKelvarFetch::_getAppDir(std::string& out) {
    out = utils::getAppDir();
}
