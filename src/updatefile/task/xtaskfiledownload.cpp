#include "updatefile/task/xtaskfiledownload.h"

#include <cstdio>

#include "host/log.h"
#include "host/objectloader.h"
#include "host/transfer.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "utils/utils.h"

void XTaskFileDownload::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, file, task download ...");
    std::shared_ptr<XUpdateFileList> list;
    loadFileList(list);
    if (!list || list->size() == 0) {
        XLOG(logProgress, "update plugin, file, task download, list null.");
        end(finish, false);
        return;
    }
    end(finish, _downloadAllFile(list));
}

bool XTaskFileDownload::_downloadAllFile(const std::shared_ptr<XUpdateFileList>& list) {
    if (!list) {
        return false;
    }
    if (utils::getAppDir().empty()) {
        XLOG(logProgress, "update plugin, file, task download, no application folder.");
        return false;
    }
    const ServicePtr<IXCurlService> curl(L"module.libcurl");
    if (!curl) {
        return false;
    }
    bool ok = true;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const XUpdateFileData* entry = (*list)[i].get();
        const char* name = entry ? fileNameOfType(entry->fileType) : nullptr;
        if (!name) {
            continue;
        }
        const std::string target = _targetPath(name);
        if (_isLocalValid(entry, target)) {
            XLOG(logProgress, "update plugin, file, task download, local have name:", name);
            continue;
        }
        const std::string tempName = "_" + std::to_string(entry->fileType);
        const std::string temp = _tempPath(tempName);
        XLOG(logProgress, "update plugin, file, task download, download name:", tempName);
        if (_downloadFile(curl.get(), entry, temp) && !_moveFile(temp, target)) {
            ok = false;
        }
    }
    return ok;
}

bool XTaskFileDownload::_isLocalValid(const XUpdateFileData* entry, const std::string& path) {
    // Without an expected MD5 nothing passes, not even a file that gives none.
    return entry && platform::fileExists(path) && !entry->fileMD5.empty() &&
           utils::toLower(utils::getFileMd5(path.c_str())) == utils::toLower(entry->fileMD5);
}

std::string XTaskFileDownload::_targetPath(const std::string& name) {
    return platform::appendPath(utils::getAppDir(), name);
}

std::string XTaskFileDownload::_tempPath(const std::string& name) {
    const std::string folder = platform::appendPath(utils::getAppDir(), "update");
    if (folder.empty()) {
        return {}; // too long: a name alone would lie in the current folder
    }
    if (!platform::canAccess(folder)) {
        platform::makeFolder(folder);
    }
    return platform::appendPath(folder, name);
}

bool XTaskFileDownload::_downloadFile(IXCurlService* curl, const XUpdateFileData* entry,
                                      const std::string& path) {
    if (!curl || !entry) {
        return false;
    }
    std::FILE* file = transfer::openTarget(path);
    if (!file) {
        return false;
    }
    const int result = transfer::perform(curl, entry->fileURL, &transfer::writeToFile, file,
                                         transfer::Peer::verified);
    static_cast<void>(std::fclose(file));
    return result == 0;
}

bool XTaskFileDownload::_moveFile(const std::string& from, const std::string& to) {
    return platform::moveFile(from, to.c_str(), platform::moveReplaceExisting);
}
