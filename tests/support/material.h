#pragma once

#include "sandbox/materials/cabwriter.h"
#include "sandbox/materials/pefile.h"
#include "support/fakehost.h"
#include "updatekelvar/data/materialdata.h"

/// Rows of a material list with their files, as the platform would offer them.
namespace material {

inline materials::Bytes bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

/// An image of that version; the seed tells images of one version apart.
inline materials::Bytes pe(const platform::FileVersion& version, std::uint64_t seed = 0) {
    return materials::buildPeFile({.version = version, .size = 3000, .seed = seed});
}

/// A row whose file is placed as it is.
inline XMaterialMetaData plain(const std::string& filePath, const std::string& version,
                               const materials::Bytes& content) {
    XMaterialMetaData row;
    row.filePath = filePath;
    row.version = version;
    row.fileId = "id of " + filePath;
    row.md5 = row.fileMd5 = materials::md5Hex(content);
    row.nonCab = true;
    return row;
}

/// A row whose file comes in `cabinet`.
inline XMaterialMetaData packed(const std::string& filePath, const std::string& version,
                                const materials::Bytes& content, const materials::Bytes& cabinet) {
    XMaterialMetaData row = plain(filePath, version, content);
    row.md5 = materials::md5Hex(cabinet);
    row.nonCab = false;
    return row;
}

inline void wants(XMaterialMetaData& row, const std::string& exec) {
    row.exec = std::make_shared<XMaterialExec>();
    row.exec->parseExec(exec);
}

} // namespace material
