#pragma once

#include <memory>
#include <string>

#include "host/orvobject.h"
#include "updatefile/updatefilelist.h"
#include "xtaskbase.h"

/// Sees to it that each file of the stored list stands beside the host's executable with the
/// expected MD5. One blocking transfer after the other on the caller's thread, then a move
/// over the old file; the file that came is not looked at before the next run. Last of its
/// chain. One object serves all runs, of which two may be under way.
class XTaskFileDownload final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(FinishCallback finish) override;

private:
    /// False when a file could not be moved into place. A file that could not be fetched
    /// does not count: the channel is done for this process without it.
    static bool _downloadAllFile(const std::shared_ptr<XUpdateFileList>& list);
    static bool _isLocalValid(const XUpdateFileData* entry, const std::string& path);
    static bool _downloadFile(IXCurlService* curl, const XUpdateFileData* entry,
                              const std::string& path);
    static std::string _targetPath(const std::string& name);
    static std::string _tempPath(const std::string& name);
    static bool _moveFile(const std::string& from, const std::string& to);
};
