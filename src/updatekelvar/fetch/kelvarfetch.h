#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "updatekelvar/data/keys.h"
#include "updatekelvar/data/materialdata.h"
#include "updatekelvar/data/packetdata.h"

class XKelvarHttp;

/// The questions to the update platform, in and out as plain data. Each operation
/// returns at once; its callback runs once on the host's delivery thread (without a
/// server address at once on the caller's), with a null pointer when there was no
/// answer. An answer that is no JSON counts as one with everything at its default.
/// Without the host's HTTP the callback never runs. The object may be gone once a
/// callback has run. One thread at a time; calls of one chain follow one another.
class XKelvarFetch {
public:
    template <class Data>
    using Callback = std::function<void(const std::shared_ptr<Data>&)>;

    /// Which packet should this client move to?
    void fetchUpgradePacket(const XUpgradePacketParam& param,
                            Callback<XUpgradePacketData> callback);
    /// What differs between a version and a packet?
    void fetchFullPacketDiff(const XFullPacketDiffParam& param,
                             Callback<XFullPacketDiffData> callback);
    /// What are a packet's own attributes?
    void fetchPacketMeta(const XPacketKey& key, Callback<XPacketMetaData> callback);
    /// Where are the files kept?
    void fetchFileStorageAddr(Callback<XFileStorageAddr> callback);
    /// What are the attributes of each material? Null too when the platform answers for
    /// another number of materials than asked. `address` must not be null.
    void fetchMaterialMeta(const std::vector<XMaterialVersionKey>& keys,
                           const std::shared_ptr<XFileStorageAddr>& address,
                           Callback<XBatchGetMaterialMetaData> callback);

private:
    std::shared_ptr<XKelvarHttp> _getHttp();

    std::shared_ptr<XKelvarHttp> http;
};
