#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

#include "updatepkg/task/xtaskpkgbase.h"
#include "updatepkg/upgradedata.h"

/// Brings the package to disk, tests its MD5 and reports progress. Blocks for the length of
/// the transfer, which a stop ends at its next write. A right package that is there already
/// is not fetched again. Goes on to the next task; alone it ends the chain.
class XTaskPkgDownload final : public XTaskPkgBase {
public:
    using XTaskBase::check;

    explicit XTaskPkgDownload(std::shared_ptr<XUpdatePkgSender> sender);

    void check(FinishCallback finish) override;

private:
    bool _havePackage();
    static bool _isLocalValid(const std::shared_ptr<UpgradeData>& data, std::string& path);
    static bool _isFileValid(const std::shared_ptr<UpgradeData>& data, const std::string& path);
    static std::string _targetPath();
    void _downloadFile(const std::string& url, const std::string& path);
    static std::size_t _write(char* buffer, std::size_t size, std::size_t count, void* task);
    std::size_t _onWrite(const char* buffer, std::size_t size, std::size_t count);

    std::FILE* m_file = nullptr; ///< of the running transfer
};
