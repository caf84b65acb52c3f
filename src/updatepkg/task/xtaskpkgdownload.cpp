#include "updatepkg/task/xtaskpkgdownload.h"

#include <utility>

#include "host/log.h"
#include "host/objectloader.h"
#include "host/transfer.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "updatepkg/task/downloadprogress.h"
#include "updatepkg/xupdatepkgtrace.h"
#include "utils/utils.h"

XTaskPkgDownload::XTaskPkgDownload(std::shared_ptr<XUpdatePkgSender> sender)
    : XTaskPkgBase(std::move(sender)) {
    DownloadProgress::instance().setSender(m_sender);
}

void XTaskPkgDownload::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, pkg, task download, check ...");
    const std::shared_ptr<XUpdatePkgSender> sender = m_sender; // outlives the task
    if (sender) {
        sender->sendDownloadStart();
    }
    DownloadProgress::instance().restart();
    const bool ok = _havePackage();
    if (ok && hasNext()) {
        XLOG(logProgress, "update plugin, download, finished");
        XTaskBase::check(std::move(finish));
        return;
    }
    XLOG(logProgress, "update plugin, pkg, task download, finished");
    end(finish, ok);
    if (sender) {
        sender->sendDownloadFinish(ok);
    }
}

/// Whether the package that the offer names is on disk in the end.
bool XTaskPkgDownload::_havePackage() {
    XUpdatePkgTrace& trace = XUpdatePkgTrace::instance();
    const std::shared_ptr<UpgradeData> data = trace.getData();
    if (!data || !data->getNeedUpgrade()) {
        return false;
    }
    DownloadProgress::instance().expect(data->getFileSize());
    std::string path;
    if (!_isLocalValid(data, path)) {
        data->setStatus(upgradeDownloading);
        trace.setData(data);
        _downloadFile(data->getPackageURL(), path);
        if (!_isFileValid(data, path)) {
            data->setStatus(upgradeBroken);
            trace.setData(data);
            return false;
        }
    }
    data->setStatus(upgradeDownloaded);
    trace.setData(data);
    return true;
}

bool XTaskPkgDownload::_isLocalValid(const std::shared_ptr<UpgradeData>& data, std::string& path) {
    if (!data) {
        return false;
    }
    path = _targetPath();
    data->setLocalPath(path);
    return _isFileValid(data, path);
}

bool XTaskPkgDownload::_isFileValid(const std::shared_ptr<UpgradeData>& data,
                                    const std::string& path) {
    if (!data || !platform::fileExists(path)) {
        return false;
    }
    // A file that cannot be read has the empty text for its MD5, which no package may match.
    const std::string md5 = utils::toLower(utils::getFileMd5(path.c_str()));
    return !md5.empty() && md5 == utils::toLower(data->getPackageMD5());
}

/// The package's place; empty, which no file has, when the application folder is not known.
std::string XTaskPkgDownload::_targetPath() {
    const std::string appDir = utils::getAppDir();
    const std::string folder = platform::appendPath(appDir, "update");
    if (appDir.empty() || folder.empty()) {
        XLOG(logProgress, "update plugin, pkg, task download, no application folder.");
        return {};
    }
    if (!platform::canAccess(folder)) {
        platform::makeFolder(folder);
    }
    return platform::appendPath(folder, "setup.exe");
}

void XTaskPkgDownload::_downloadFile(const std::string& url, const std::string& path) {
    const ServicePtr<IXCurlService> service(L"module.libcurl");
    if (!service) {
        return;
    }
    m_file = transfer::openTarget(path);
    if (!m_file) {
        return;
    }
    // Neither its result nor the server's certificate decides, but the MD5 test that follows.
    transfer::perform(service.get(), url, &_write, this, transfer::Peer::anyone);
    static_cast<void>(std::fclose(m_file));
    m_file = nullptr;
}

std::size_t XTaskPkgDownload::_write(char* buffer, std::size_t size, std::size_t count,
                                     void* task) {
    return task ? static_cast<XTaskPkgDownload*>(task)->_onWrite(buffer, size, count) : 0;
}

std::size_t XTaskPkgDownload::_onWrite(const char* buffer, std::size_t size, std::size_t count) {
    if (isStopped()) {
        return 0; // fewer than were given: the transfer fails
    }
    const std::size_t written = std::fwrite(buffer, size, count, m_file);
    DownloadProgress::instance().received(written);
    return written;
}
