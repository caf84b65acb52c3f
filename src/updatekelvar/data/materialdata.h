#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "updatekelvar/data/exec/materialexec.h"
#include "updatekelvar/data/keys.h"
#include "updatekelvar/data/materialcheck.h"

/// Id of the module that brings the virus library.
inline constexpr const char* virusLibModule = "/orvviruslib";

/// A material's parameters as they came, which are only read. Copies share them: a run copies its
/// rows from task to task.
class XMaterialParams {
public:
    using Map = std::map<std::string, std::string>;

    XMaterialParams() : params(std::make_shared<const Map>()) {}
    explicit XMaterialParams(Map map) : params(std::make_shared<const Map>(std::move(map))) {}

    bool empty() const { return params->empty(); }
    std::size_t size() const { return params->size(); }
    const std::string& at(const std::string& key) const { return params->at(key); }
    friend bool operator==(const XMaterialParams& a, const Map& b) { return *a.params == b; }

private:
    std::shared_ptr<const Map> params;
};

/// A material on offer. A copy shares the parsed parameters, which are only read.
struct XMaterialMetaData {
    XMaterialKey material;
    std::string fileId; ///< name in the storage
    int fileType = 0;
    std::string md5;     ///< of the stored file
    std::string fileMd5; ///< of the file that is put in place
    std::string fileHash;
    int executeType = 0;
    std::string executeParam;
    bool isReferenced = false;
    std::int64_t createTime = 0; ///< seconds
    std::int64_t updateTime = 0; ///< seconds
    std::string filePath;        ///< relative to the application folder, with "\"
    std::string osver;           ///< the one operating system version it is for; or empty
    bool nonCab = false;         ///< the stored file is the file itself and no cabinet
    std::string dependent;
    XMaterialParams extends;
    std::string downloadUrl;
    std::string version;
    std::shared_ptr<IXMaterialCheck> checkSys; ///< null when there is no such parameter
    std::shared_ptr<IXMaterialCheck> checkApp; ///< likewise
    std::shared_ptr<IXMaterialExec> exec;      ///< likewise
};

/// The material list that runs through a chain.
struct XBatchGetMaterialMetaData {
    std::vector<XMaterialMetaData> materials;
    bool hasSp = false;          ///< the service pack's marker file is among them
    std::string version;         ///< what the update brings
    std::string virusLibVersion; ///< empty when it brings no virus library

    XBatchGetMaterialMetaData() = default;
    XBatchGetMaterialMetaData(const XBatchGetMaterialMetaData&) = default;
    XBatchGetMaterialMetaData& operator=(const XBatchGetMaterialMetaData&) = default;
    ~XBatchGetMaterialMetaData(); ///< logs
};
