#include "updatekelvar/fetch/messages.h"

#include "kelvar/types/extended_method/full_packet_diff.pb.h"
#include "kelvar/types/extended_method/methods.pb.h"
#include "kelvar/types/keys.pb.h"
#include "kelvar/types/packet_meta.pb.h"
#include "utils/utils.h"

namespace types = kelvar::types;

namespace {

constexpr const char* restartTrayParam = "restart_tray";

void fillChannel(types::ChannelId& message, const XChannelKey& key) {
    message.set_product_id(key.productId);
    message.set_id(key.id);
}

XChannelKey readChannel(const types::ChannelId& message) {
    return {message.product_id(), message.id()};
}

XModuleKey readModule(const types::ModuleId& message) {
    return {message.id(), readChannel(message.channel_id())};
}

XMaterialKey readMaterial(const types::MaterialId& message) {
    return {message.id(), readModule(message.module_id())};
}

XModuleCouple readCouple(const types::extended_method::ModuleCouple& message) {
    return {readModule(message.module_id()), message.base_version(), message.target_version(),
            message.is_delete()};
}

XMaterialCouple readCouple(const types::extended_method::MaterialCouple& message) {
    return {readMaterial(message.material_id()), message.base_version(), message.target_version(),
            message.is_delete()};
}

} // namespace

namespace messages {

void fill(types::extended_method::GetUpgradePacket_Request& request,
          const XUpgradePacketParam& param) {
    vantor::AssetId& asset = *request.mutable_customer()->mutable_asset_id();
    asset.set_oid(param.assetOid);
    asset.set_id(param.assetId);
    request.set_channel_code(param.channelCode);
    request.set_version(param.version);
    request.mutable_params()->insert(param.params.begin(), param.params.end());
}

void fill(types::PacketId& message, const XPacketKey& key) {
    fillChannel(*message.mutable_channel_id(), key.channel);
    message.set_ver(key.ver);
}

void fill(types::MaterialVersionId& message, const XMaterialVersionKey& key) {
    types::MaterialId& material = *message.mutable_material_id();
    types::ModuleId& module = *material.mutable_module_id();
    fillChannel(*module.mutable_channel_id(), key.material.module.channel);
    module.set_id(key.material.module.id);
    material.set_id(key.material.id);
    message.set_ver(key.ver);
}

XPacketKey read(const types::PacketId& message) {
    return {readChannel(message.channel_id()), message.ver()};
}

XFullPacketDiffData read(const types::extended_method::FullPacketDiff& message) {
    XFullPacketDiffData data;
    data.channelId = message.channel_id();
    data.startVersion = message.start_version();
    data.targetVersion = message.target_version();
    data.isDelete = message.is_delete();
    for (const auto& couple : message.modules()) {
        data.modules.push_back(readCouple(couple));
    }
    for (const auto& couple : message.materials()) {
        data.materials.push_back(readCouple(couple));
    }
    return data;
}

XPacketMetaData read(const types::packet::Meta& message) {
    XPacketMetaData data;
    data.fileId = message.file_id();
    data.fileType = message.file_type();
    data.createTime = message.create_time().seconds();
    data.updateTime = message.update_time().seconds();
    const auto param = message.extends().find(restartTrayParam);
    if (param != message.extends().end()) {
        data.restartTray = utils::toInt(param->second) != 0;
    }
    return data;
}

} // namespace messages
