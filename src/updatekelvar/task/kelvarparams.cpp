#include <cstddef>

#include "host/hostmodules.h"
#include "updatekelvar/task/kelvaridentity.h"
#include "updatekelvar/task/xtaskkelvarfetch.h"
#include "utils/utils.h"

namespace {

constexpr std::int64_t unknownAsset = -1;

/// Parts of the identity text that are needed: "oid-id-" and something behind.
constexpr std::size_t leastIdentityParts = 3;

constexpr const char* testParamName = "kelvar_test";
constexpr const char* testParamValue = "true";

constexpr const char* leastVersion = "1.0.0.1001";
constexpr const char* unknownVersion = "0.0.0.0";

void readIdentity(XUpgradePacketParam& out) {
    uc::IUserCenter* center = hostmodules::getUserCenter();
    uc::IUserState* token = center ? center->tokenState() : nullptr;
    if (!token || !token->isValid()) {
        return;
    }
    const char* identity = token->identity();
    std::vector<std::string> parts;
    utils::splitString(identity ? identity : "", "-", parts);
    if (parts.size() >= leastIdentityParts) {
        out.assetOid = utils::toInt(parts[0]);
        out.assetId = utils::toInt(parts[1]);
    }
}

} // namespace

void XTaskKelvarFetch::_makeUpgradePacketParam(XUpgradePacketParam& out) {
    out.channelCode = kelvaridentity::channelId();
    _getClientVersion(out.version);
    readIdentity(out);
    out.assetOid = out.assetOid == 0 ? unknownAsset : out.assetOid;
    out.assetId = out.assetId == 0 ? unknownAsset : out.assetId;
    if (kelvaridentity::testParam()) {
        out.params[testParamName] = testParamValue;
    }
}

void XTaskKelvarFetch::_getClientVersion(std::string& out) {
    const std::string version = utils::getDataVersion();
    std::vector<std::string> parts;
    std::vector<std::string> least;
    utils::splitString(version, ".", parts);
    utils::splitString(leastVersion, ".", least);
    out = unknownVersion;
    if (parts.size() != least.size()) {
        return;
    }
    // Each part by itself, which is no ordering: 2.0.0.5 fails on its last part.
    for (std::size_t i = 0; i < least.size(); ++i) {
        if (utils::toInt(parts[i]) < utils::toInt(least[i])) {
            return;
        }
    }
    out = version;
}

void XTaskKelvarFetch::_makeFullPacketDiffParam(const std::string& version,
                                                const UpgradePacket& upgrade,
                                                XFullPacketDiffParam& out) {
    out.channelId = kelvaridentity::channelId();
    out.startVer = version;
    out.targetVer = upgrade->target.ver;
}

void XTaskKelvarFetch::_makeMaterialKeys(const FullPacketDiff& diff, MaterialKeys& out) {
    for (const XMaterialCouple& couple : diff->materials) {
        out.push_back({couple.material, couple.targetVersion});
    }
}
