#pragma once

#include <memory>
#include <string>
#include <vector>

#include "updatekelvar/fetch/kelvarfetch.h"
#include "xtaskbase.h"

/// Asks the update platform, in five requests each made from the answer before, what
/// this client needs, and hands the materials that this machine wants to the next task.
/// check returns at once; the later steps, the next task included, run on the host's
/// delivery thread. A request without an answer ends the chain; without the host's HTTP
/// it neither goes on nor ends.
class XTaskKelvarFetch final : public XTaskBase {
public:
    /// Takes the channel of this client anew, and what the test file sets in its place.
    XTaskKelvarFetch();
    ~XTaskKelvarFetch() override;

    using XTaskBase::check;
    void check(FinishCallback finish) override;

private:
    using UpgradePacket = std::shared_ptr<XUpgradePacketData>;
    using FullPacketDiff = std::shared_ptr<XFullPacketDiffData>;
    using PacketMeta = std::shared_ptr<XPacketMetaData>;
    using FileStorageAddr = std::shared_ptr<XFileStorageAddr>;
    using MaterialMeta = std::shared_ptr<XBatchGetMaterialMetaData>;
    using MaterialKeys = std::vector<XMaterialVersionKey>;
    template <class Data>
    using Step = XKelvarFetch::Callback<Data>;

    // The steps in their order: each receives the answer to the request before it and
    // makes the next one; the last enters the next task. What a step holds is all the
    // state there is between two requests.
    Step<XUpgradePacketData> _step1(const FinishCallback& finish, const XUpgradePacketParam& param);
    Step<XFullPacketDiffData> _step2(const FinishCallback& finish, const UpgradePacket& upgrade);
    Step<XPacketMetaData> _step3(const FinishCallback& finish, const FullPacketDiff& diff);
    Step<XFileStorageAddr> _step4(const FinishCallback& finish, const FullPacketDiff& diff,
                                  const PacketMeta& meta);
    Step<XBatchGetMaterialMetaData> _step5(const FinishCallback& finish,
                                           const FileStorageAddr& address,
                                           const FullPacketDiff& diff, const PacketMeta& meta);

    void _fetchUpgradePacket(const XUpgradePacketParam& param, Step<XUpgradePacketData> step);
    void _fetchFullPacketDiff(const XFullPacketDiffParam& param, Step<XFullPacketDiffData> step);
    void _fetchPacketMeta(const XPacketKey& key, Step<XPacketMetaData> step);
    void _fetchFileStorageAddr(Step<XFileStorageAddr> step);
    void _fetchMaterialMeta(const MaterialKeys& keys, const FileStorageAddr& address,
                            Step<XBatchGetMaterialMetaData> step);

    void _makeUpgradePacketParam(XUpgradePacketParam& out);
    void _getClientVersion(std::string& out);
    void _makeFullPacketDiffParam(const std::string& version, const UpgradePacket& upgrade,
                                  XFullPacketDiffParam& out);
    void _makeMaterialKeys(const FullPacketDiff& diff, MaterialKeys& out);

    // Each keeps the rows that pass, and only the rows, and leaves `in` empty; `in` and `out` may
    // be one.
    void _filterMaterialMetaFromAppVer(const MaterialMeta& in, MaterialMeta& out);
    void _filterMaterialMetaFromOSVer(const MaterialMeta& in, MaterialMeta& out);
    void _filterMaterialMetaFromFileVer(const MaterialMeta& in, MaterialMeta& out);

    void _hasSpMaterial(const MaterialMeta& in, bool& out);
    void _getVirusLibVersion(const FullPacketDiff& diff, std::string& out);
    void _getAppDir(std::string& out);

    std::shared_ptr<XKelvarFetch> fetch;
};
