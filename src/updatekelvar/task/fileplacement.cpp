#include <algorithm>

#include "host/log.h"
#include "platform/cabinet.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "updatekelvar/task/materialnames.h"
#include "updatekelvar/task/xtaskkelvarmove.h"
#include "utils/utils.h"

namespace {

constexpr int lastTempNumber = 9999;

std::string withFolder(const std::string& parent, const char* name) {
    std::string path = platform::appendPath(parent, name);
    if (!platform::canAccess(path)) {
        platform::makeFolder(path);
    }
    return path;
}

std::string lastElement(const std::string& path) {
    return path.substr(path.rfind('\\') + 1); // all of it without a backslash
}

} // namespace

std::string XTaskKelvarMove::_getAppDir() {
    return utils::getAppDir();
}

std::string XTaskKelvarMove::_getUpdateDir() {
    return withFolder(_getAppDir(), "update");
}

std::string XTaskKelvarMove::_getTempDir() {
    return withFolder(_getUpdateDir(), "temp");
}

bool XTaskKelvarMove::_moveOneFile(const std::string& appDir, const std::string& updateDir,
                                   const std::string& tempDir, const XMaterialMetaData& row,
                                   XMovePaths& paths, bool* isPE, bool* peeding) {
    *isPE = true;
    std::string src = updateDir + row.md5;
    std::string dst = appDir + row.filePath;
    std::replace(dst.begin(), dst.end(), '/', '\\');
    if (!_isSafe(row, dst)) {
        return false;
    }
    const std::string temp = _uniqueTempPath(tempDir + row.md5);
    if (!_preMove(row, appDir, updateDir, dst, src)) {
        XLOG(logProgress, "update plugin, kelvar, task premove, error:", row.md5, " to ",
             row.fileId);
        return false;
    }
    if (!_needMove(src, dst, row, isPE)) {
        XLOG(logProgress, "update plugin, kelvar, task move, not need move:", row.md5, " to ",
             row.fileId);
        return false;
    }
    XLOG(logProgress, "update plugin, kelvar, task move, move:", row.md5, " to ", row.fileId);
    if (!_moveFile(src, dst, temp, peeding)) {
        return false;
    }
    paths = {src, dst, temp};
    return true;
}

bool XTaskKelvarMove::_isSafe(const XMaterialMetaData& row, const std::string& dst) {
    if (!materialnames::isPlainName(row.md5) || !materialnames::isPlainName(row.fileMd5)) {
        XLOG(logProgress, "update plugin, kelvar, task move, bad name, md5:", row.md5,
             ", file md5:", row.fileMd5);
        return false;
    }
    if (!materialnames::staysBelow(row.filePath)) {
        XLOG(logProgress, "update plugin, kelvar, task move, bad path:", row.filePath,
             ", md5:", row.md5);
        return false;
    }
    if (platform::isFolder(dst)) {
        XLOG(logProgress, "update plugin, kelvar, task move, target is a folder:", row.filePath,
             ", md5:", row.md5);
        return false;
    }
    return true;
}

std::string XTaskKelvarMove::_uniqueTempPath(const std::string& path) {
    if (!platform::fileExists(path)) {
        return path;
    }
    for (int i = 0; i <= lastTempNumber; ++i) {
        std::string candidate = path + "_" + std::to_string(i);
        if (!platform::fileExists(candidate)) {
            return candidate;
        }
    }
    return path;
}

bool XTaskKelvarMove::_preMove(const XMaterialMetaData& row, const std::string& appDir,
                               const std::string& updateDir, const std::string& dst,
                               std::string& src) {
    if (!row.nonCab) {
        if (!_expandCabinet(row, src, updateDir)) {
            return false;
        }
        platform::removeFile(src); // gone from here on, whatever happens next
        // The folder ends in a backslash: the system reads two in a row as one.
        src = updateDir + "\\" + row.fileMd5;
        const std::string expanded = updateDir + "\\" + lastElement(row.filePath);
        if (!platform::isFolder(expanded)) { // "temp" itself may bear a target's name
            platform::moveFile(expanded, src.c_str(), platform::moveReplaceExisting);
        }
    }
    _makeDirs(appDir, dst);
    return true;
}

bool XTaskKelvarMove::_expandCabinet(const XMaterialMetaData& row, const std::string& cabinet,
                                     const std::string& updateDir) {
    using platform::CabinetMember;
    using platform::CabinetNotification;
    if (!_isReasonable(row, cabinet)) {
        return false;
    }
    const auto lookAtName = [&](CabinetNotification notification, const CabinetMember& member) {
        const bool isGood = notification == CabinetNotification::fileInCabinet &&
                            _mayBeWritten(row, member.nameInCabinet);
        return isGood ? platform::cabinetSkip : platform::cabinetAbort;
    };
    const auto extract = [&](CabinetNotification notification, CabinetMember& member) {
        if (notification != CabinetNotification::fileInCabinet) {
            return 0U;
        }
        // Not taken from the first pass: the file may be another one by now.
        if (!_mayBeWritten(row, member.nameInCabinet)) {
            return platform::cabinetAbort;
        }
        member.fullTargetName = updateDir + member.nameInCabinet;
        return platform::cabinetDoIt;
    };
    // The first pass looks at all names before anything is written.
    return platform::iterateCabinet(cabinet, lookAtName) &&
           platform::iterateCabinet(cabinet, extract);
}

bool XTaskKelvarMove::_isReasonable(const XMaterialMetaData& row, const std::string& cabinet) {
    const auto extent = platform::cabinetExtent(cabinet);
    if (!extent) {
        return false;
    }
    constexpr platform::CabinetExtent most = platform::maxCabinetExtent;
    if (extent->members <= most.members && extent->unpackedBytes <= most.unpackedBytes) {
        return true;
    }
    XLOG(logProgress, "update plugin, kelvar, task premove, cabinet asks for too much, members:",
         extent->members, ", unpacked bytes:", extent->unpackedBytes, ", cabinet:", row.md5);
    return false;
}

bool XTaskKelvarMove::_mayBeWritten(const XMaterialMetaData& row, const std::string& member) {
    if (materialnames::staysBelow(member) && !materialnames::isSameFile(member, row.md5)) {
        return true;
    }
    XLOG(logProgress, "update plugin, kelvar, task premove, bad member:", member,
         ", cabinet:", row.md5);
    return false;
}

bool XTaskKelvarMove::_makeDirs(const std::string& appDir, const std::string& dst) {
    std::string rest = platform::removeFileSpec(dst) + "\\";
    if (const std::size_t at = rest.find(appDir); at != std::string::npos) {
        rest.erase(at, appDir.size());
    }
    std::string current = appDir;
    for (std::size_t end = rest.find('\\'); end != std::string::npos; end = rest.find('\\')) {
        current += rest.substr(0, end) + "\\";
        if (!platform::canAccess(current)) {
            platform::makeFolder(current);
        }
        rest.erase(0, end + 1);
    }
    return true;
}

bool XTaskKelvarMove::_needMove(const std::string& src, const std::string& dst,
                                const XMaterialMetaData& row, bool* isPE) {
    if (!platform::fileExists(src)) {
        XLOG(logProgress, "update plugin, kelvar, needMove, src not exist:", src);
        return false;
    }
    const std::string md5 = utils::toLower(utils::getFileMd5(src.c_str()));
    if (md5 != utils::toLower(row.fileMd5)) {
        // Behind "meta.fileMd5:" stands the path.
        XLOG(logProgress, "update plugin, kelvar, needMove, md5 diff, meta.fileMd5:", src,
             ", file md5:", md5);
        return false;
    }
    std::string srcVersion = utils::getFileVersion(src.c_str(), isPE);
    if (!*isPE) {
        srcVersion = row.version;
    }
    if (!platform::fileExists(dst)) {
        return true;
    }
    bool ignored = false;
    const std::string dstVersion = utils::getFileVersion(dst.c_str(), &ignored);
    if (utils::compareVersion(srcVersion, dstVersion) > 0) {
        return true;
    }
    XLOG(logProgress, "update plugin, kelvar, needMove, ver err, srcfile ver:", srcVersion,
         ", dstfile ver:", dstVersion);
    return false;
}
