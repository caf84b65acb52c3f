#include "updatekelvar/task/xtaskkelvardownload.h"

#include <cstdio>
#include <utility>

#include "host/log.h"
#include "host/objectloader.h"
#include "host/transfer.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "updatekelvar/task/materialnames.h"
#include "utils/utils.h"

void XTaskKelvarDownload::check(const XBatchGetMaterialMetaData* data, FinishCallback finish) {
    XLOG(logProgress, "update plugin, kelvar, task download, check ... ");
    if (!data) {
        end(finish, false);
        return;
    }
    const auto copy = std::make_shared<XBatchGetMaterialMetaData>(*data);
    if (!_downloadAllFile(copy)) {
        end(finish, false);
        return;
    }
    XTaskBase::check(copy.get(), std::move(finish));
}

bool XTaskKelvarDownload::_downloadAllFile(const std::shared_ptr<XBatchGetMaterialMetaData>& data) {
    if (!data) {
        return false;
    }
    if (utils::getAppDir().empty()) {
        XLOG(logProgress, "update plugin, kelvar, task download, no application folder.");
        return false;
    }
    const ServicePtr<IXCurlService> service(L"module.libcurl");
    if (!service) {
        return false;
    }
    bool result = true;
    for (const XMaterialMetaData& row : data->materials) {
        // A bad file does not stop the others: the next run finds as much as can be had.
        result = _downloadRow(service.get(), row) && result;
    }
    return result;
}

bool XTaskKelvarDownload::_downloadRow(IXCurlService* service, const XMaterialMetaData& row) {
    // A row without a hash of the placed file gets its file and is refused by the move.
    if (!materialnames::isPlainName(row.md5) ||
        (!row.fileMd5.empty() && !materialnames::isPlainName(row.fileMd5))) {
        XLOG(logProgress, "update plugin, kelvar, task download, bad name, md5:", row.md5,
             ", file md5:", row.fileMd5);
        return false;
    }
    const std::string path = _getLocalPath(row.md5);
    if (_hasLocalFile(row, path)) {
        XLOG(logProgress, "update plugin, kelvar, task download, have local file:", row.md5);
        return true;
    }
    XLOG(logProgress, "update plugin, kelvar, task download, download name:", row.md5,
         ", url:", row.downloadUrl);
    return _downloadFile(service, row, path);
}

std::string XTaskKelvarDownload::_getLocalPath(const std::string& name) {
    const std::string folder = platform::appendPath(utils::getAppDir(), "update");
    if (!platform::canAccess(folder)) {
        platform::makeFolder(folder);
    }
    return platform::appendPath(folder, name);
}

bool XTaskKelvarDownload::_hasLocalFile(const XMaterialMetaData& row, const std::string& path) {
    return platform::fileExists(path) &&
           utils::toLower(utils::getFileMd5(path.c_str())) == utils::toLower(row.md5);
}

bool XTaskKelvarDownload::_downloadFile(IXCurlService* service, const XMaterialMetaData& row,
                                        const std::string& path) {
    if (!service || row.downloadUrl.empty()) {
        XLOG(logProgress, "update plugin, download task, param err, url:", row.downloadUrl);
        return false;
    }
    XLOG(logProgress, "update plugin, download task, url:", row.downloadUrl);
    std::FILE* file = transfer::openTarget(path);
    if (!file) {
        XLOG(logProgress, "update plugin, download task, open err, path", path);
        return false;
    }
    // The storage is not asked to prove itself: a wrong file fails its MD5 test.
    const int code =
        transfer::perform(service, row.downloadUrl, &_writeBody, file, transfer::Peer::anyone);
    static_cast<void>(std::fclose(file));
    return code == 0;
}

std::size_t XTaskKelvarDownload::_writeBody(char* data, std::size_t size, std::size_t count,
                                            void* file) {
    return transfer::writeToFile(data, size, count, file);
}
