#include <algorithm>

#include "kelvar/types/material_meta.pb.h"
#include "updatekelvar/fetch/messages.h"
#include "utils/utils.h"

namespace {

/// The check of a parameter; null without one. A text that does not parse makes a check
/// that passes.
template <class Check>
std::shared_ptr<IXMaterialCheck> parseCheck(const std::string& text) {
    if (text.empty()) {
        return nullptr;
    }
    auto check = std::make_shared<Check>();
    check->parse(text);
    return check;
}

std::shared_ptr<IXMaterialExec> parseExec(const std::string& text) {
    if (text.empty()) {
        return nullptr;
    }
    auto exec = std::make_shared<XMaterialExec>();
    exec->parseExec(text);
    return exec;
}

/// Indexing makes the missing parameters, empty: a row always has these eight.
void readParams(XMaterialMetaData& row, XMaterialParams::Map params) {
    row.fileMd5 = params["file_md5"];
    row.filePath = params["file_path"];
    std::replace(row.filePath.begin(), row.filePath.end(), '/', '\\');
    row.osver = params["osver"];
    row.nonCab = utils::toInt(params["non_cab"]) != 0;
    row.dependent = params["dependent"];
    row.checkSys = parseCheck<XMaterialSysVerCheck>(params["check_sys"]);
    row.checkApp = parseCheck<XMaterialAppVerCheck>(params["check_app"]);
    row.exec = parseExec(params["exec"]);
    row.extends = XMaterialParams(std::move(params));
}

} // namespace

namespace messages {

XMaterialMetaData read(const kelvar::types::material::Meta& message, const XMaterialVersionKey& key,
                       const std::string& storage) {
    XMaterialMetaData row;
    row.material = key.material;
    row.fileId = message.file_id();
    row.fileType = message.file_type();
    row.md5 = message.md5();
    row.fileHash = message.file_hash();
    row.executeType = message.execute_type();
    row.executeParam = message.execute_param();
    row.isReferenced = message.is_referenced();
    row.createTime = message.create_time().seconds();
    row.updateTime = message.update_time().seconds();
    row.downloadUrl = storage + "/" + message.file_id();
    row.version = key.ver;
    readParams(row, {message.extends().begin(), message.extends().end()});
    return row;
}

} // namespace messages
