#include "host/log.h"
#include "platform/files.h"
#include "platform/lasterror.h"
#include "updatekelvar/task/xtaskkelvarmove.h"

using platform::moveDelayUntilReboot;
using platform::moveReplaceExisting;

bool XTaskKelvarMove::_moveFile(const std::string& src, const std::string& dst,
                                const std::string& temp, bool* peeding) {
    *peeding = false;
    if (platform::fileExists(dst)) {
        if (!platform::moveFile(dst, temp.c_str(), moveReplaceExisting)) {
            XLOG(logProgress,
                 "update plugin, move task, move dst to temp error, code:", platform::lastError());
            *peeding = _peedingFile(src, dst);
            return *peeding;
        }
        // A process may still run the old file: the system deletes it at the restart.
        if (!platform::moveFile(temp, nullptr, moveDelayUntilReboot)) {
            XLOG(logProgress,
                 "update plugin, move task, move temp reboot error, code:", platform::lastError());
        }
    }
    if (platform::moveFile(src, dst.c_str(), moveReplaceExisting)) {
        return true;
    }
    // The old file stays in temp and the target absent until a later run places it.
    XLOG(logProgress,
         "update plugin, move task, move src to dst error, code:", platform::lastError());
    return false;
}

bool XTaskKelvarMove::_rollbackFile(const std::string& src, const std::string& dst,
                                    const std::string& temp) {
    if (!platform::moveFile(dst, src.c_str(), moveReplaceExisting)) {
        XLOG(logProgress,
             "update plugin, move task, rollback 1 error, code:", platform::lastError());
        return false;
    }
    // Fails, without harm, where there was no old file. The delete of temp at the restart
    // is not withdrawn: it will find nothing.
    if (!platform::moveFile(temp, dst.c_str(), moveReplaceExisting)) {
        XLOG(logProgress,
             "update plugin, move task, rollback 2 error, code:", platform::lastError());
    }
    return true;
}

bool XTaskKelvarMove::_peedingFile(const std::string& src, const std::string& dst) {
    XLOG(logProgress, "update plugin, move task, set peeding :", dst);
    if (!platform::moveFile(src, dst.c_str(), moveReplaceExisting | moveDelayUntilReboot)) {
        XLOG(logProgress,
             "update plugin, move task, peeding src to dst error, code:", platform::lastError());
        return false;
    }
    return true;
}
