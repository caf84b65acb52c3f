#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "updatekelvar/data/keys.h"

/// What the questions about packets take and bring. Plain values.

struct XUpgradePacketParam {
    std::string channelCode;
    std::string version;
    std::int64_t assetOid = 0;
    std::int64_t assetId = 0;
    std::map<std::string, std::string> params;
};

struct XFullPacketDiffParam {
    std::string channelId;
    std::string startVer;
    std::string targetVer;
};

/// The packet that this client should move to.
struct XUpgradePacketData {
    XPacketKey target;
};

struct XModuleCouple {
    XModuleKey module;
    std::string baseVersion;
    std::string targetVersion;
    bool isDelete = false;
};

struct XMaterialCouple {
    XMaterialKey material;
    std::string baseVersion;
    std::string targetVersion;
    bool isDelete = false;
};

/// What differs between the client's version and its target.
struct XFullPacketDiffData {
    std::string channelId;
    std::string startVersion;
    std::string targetVersion;
    bool isDelete = false;
    std::vector<XModuleCouple> modules;
    std::vector<XMaterialCouple> materials;
};

/// A packet's own attributes. All but restartTray stay at their defaults when the
/// answer has parameters, which end its reading.
struct XPacketMetaData {
    std::string fileId;
    int fileType = 0;
    std::int64_t createTime = 0; ///< seconds
    std::int64_t updateTime = 0; ///< seconds
    bool restartTray = false;
};

/// Where materials lie, for clients and for tests.
struct XFileStorageAddr {
    std::string normalFileAddr;
    std::string testFileAddr;
};
