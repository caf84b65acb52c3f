#include "updatekelvar/task/xtaskkelvarfetch.h"

#include <utility>

#include "host/log.h"
#include "updatekelvar/task/kelvaridentity.h"
#include "utils/utils.h"

XTaskKelvarFetch::XTaskKelvarFetch() : fetch(std::make_shared<XKelvarFetch>()) {
    std::string channelId = utils::getChannelType();
    int updateTime = 0;
    bool testParam = false;
    if (utils::readTestConfig(channelId, updateTime, testParam)) {
        kelvaridentity::setTestParam(testParam);
    }
    kelvaridentity::setChannelId(channelId);
}

XTaskKelvarFetch::~XTaskKelvarFetch() = default;

void XTaskKelvarFetch::check(FinishCallback finish) {
    XLOG(logProgress, "update plugin, kelvar, task fetch, check ...");
    XUpgradePacketParam param;
    _makeUpgradePacketParam(param);
    _fetchUpgradePacket(param, _step1(finish, param));
}

XTaskKelvarFetch::Step<XUpgradePacketData>
XTaskKelvarFetch::_step1(const FinishCallback& finish, const XUpgradePacketParam& param) {
    return [this, finish, param](const UpgradePacket& upgrade) {
        if (!upgrade) {
            XLOG(logProgress, "update plugin, kelvar, task fetch, upgradePacketData nil . ");
            end(finish, false);
            return;
        }
        XFullPacketDiffParam diffParam;
        _makeFullPacketDiffParam(param.version, upgrade, diffParam);
        _fetchFullPacketDiff(diffParam, _step2(finish, upgrade));
    };
}

XTaskKelvarFetch::Step<XFullPacketDiffData> XTaskKelvarFetch::_step2(const FinishCallback& finish,
                                                                     const UpgradePacket& upgrade) {
    return [this, finish, upgrade](const FullPacketDiff& diff) {
        if (!diff) {
            XLOG(logProgress, "update plugin, kelvar, task fetch, fullPacketDiffData nil . ");
            end(finish, false);
            return;
        }
        _fetchPacketMeta(upgrade->target, _step3(finish, diff));
    };
}

XTaskKelvarFetch::Step<XPacketMetaData> XTaskKelvarFetch::_step3(const FinishCallback& finish,
                                                                 const FullPacketDiff& diff) {
    return [this, finish, diff](const PacketMeta& meta) {
        if (!meta) {
            XLOG(logProgress, "update plugin, kelvar, task fetch, getPacketMeta nil . ");
            end(finish, false);
            return;
        }
        _fetchFileStorageAddr(_step4(finish, diff, meta));
    };
}

XTaskKelvarFetch::Step<XFileStorageAddr> XTaskKelvarFetch::_step4(const FinishCallback& finish,
                                                                  const FullPacketDiff& diff,
                                                                  const PacketMeta& meta) {
    return [this, finish, diff, meta](const FileStorageAddr& address) {
        if (!address) {
            XLOG(logProgress, "update plugin, kelvar, task fetch, fileStorageAddr nil . ");
            end(finish, false);
            return;
        }
        MaterialKeys keys;
        _makeMaterialKeys(diff, keys);
        _fetchMaterialMeta(keys, address, _step5(finish, address, diff, meta));
    };
}

XTaskKelvarFetch::Step<XBatchGetMaterialMetaData>
XTaskKelvarFetch::_step5(const FinishCallback& finish, const FileStorageAddr& address,
                         const FullPacketDiff& diff, const PacketMeta& meta) {
    // Address and packet meta are not used any more; they live as long as the chain.
    return [this, finish, address, diff, meta](const MaterialMeta& materials) {
        if (!materials) {
            XLOG(logProgress, "update plugin, kelvar, task fetch, batchGetMaterialMetaData nil . ");
            end(finish, false);
            return;
        }
        MaterialMeta wanted;
        _filterMaterialMetaFromAppVer(materials, wanted);
        _filterMaterialMetaFromOSVer(wanted, wanted);
        _filterMaterialMetaFromFileVer(wanted, wanted);
        wanted->version = diff->targetVersion;
        _hasSpMaterial(wanted, wanted->hasSp);
        _getVirusLibVersion(diff, wanted->virusLibVersion);
        XTaskBase::check(wanted.get(), finish);
    };
}

void XTaskKelvarFetch::_fetchUpgradePacket(const XUpgradePacketParam& param,
                                           Step<XUpgradePacketData> step) {
    if (fetch) {
        fetch->fetchUpgradePacket(param, std::move(step));
    } else {
        step(nullptr);
    }
}

void XTaskKelvarFetch::_fetchFullPacketDiff(const XFullPacketDiffParam& param,
                                            Step<XFullPacketDiffData> step) {
    if (fetch) {
        fetch->fetchFullPacketDiff(param, std::move(step));
    }
}

void XTaskKelvarFetch::_fetchPacketMeta(const XPacketKey& key, Step<XPacketMetaData> step) {
    if (fetch) {
        fetch->fetchPacketMeta(key, std::move(step));
    }
}

void XTaskKelvarFetch::_fetchFileStorageAddr(Step<XFileStorageAddr> step) {
    if (fetch) {
        fetch->fetchFileStorageAddr(std::move(step));
    }
}

void XTaskKelvarFetch::_fetchMaterialMeta(const MaterialKeys& keys, const FileStorageAddr& address,
                                          Step<XBatchGetMaterialMetaData> step) {
    if (fetch) {
        fetch->fetchMaterialMeta(keys, address, std::move(step));
    }
}
