#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "host/orvobject.h"
#include "updatekelvar/data/materialdata.h"
#include "xtaskbase.h"

/// Sees to it that each material's file lies in the update folder under the name of its
/// own MD5. One blocking transfer after the other on the caller's thread; a file that is
/// there already is not fetched again. Keeps what it got when a row fails.
class XTaskKelvarDownload final : public XTaskBase {
public:
    using XTaskBase::check;

    void check(const XBatchGetMaterialMetaData* data, FinishCallback finish) override;

private:
    static bool _downloadAllFile(const std::shared_ptr<XBatchGetMaterialMetaData>& data);
    static bool _downloadRow(IXCurlService* service, const XMaterialMetaData& row);
    static std::string _getLocalPath(const std::string& name);
    static bool _hasLocalFile(const XMaterialMetaData& row, const std::string& path);
    static bool _downloadFile(IXCurlService* service, const XMaterialMetaData& row,
                              const std::string& path);
    static std::size_t _writeBody(char* data, std::size_t size, std::size_t count, void* file);
};
