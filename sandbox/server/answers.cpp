#include "sandbox/server/answers.h"

#include <nlohmann/json.hpp>

namespace sandbox {
namespace {

using Json = nlohmann::json;

Json channelKey(const Offer& offer) {
    return {{"product_id", offer.productId}, {"id", offer.channelId}};
}

Json moduleKey(const Offer& offer, const std::string& id) {
    return {{"channel_id", channelKey(offer)}, {"id", id}};
}

Json upgradePacket(const Offer& offer) {
    return {{"target", {{"channel_id", channelKey(offer)}, {"ver", offer.version}}}};
}

Json packetDiff(const Offer& offer, const ExpectedRun& run) {
    Json modules = Json::array();
    for (const OfferedModule& module : offer.modules) {
        modules.push_back({{"module_id", moduleKey(offer, module.id)},
                           {"base_version", module.baseVersion},
                           {"target_version", module.version},
                           {"is_delete", false}});
    }
    Json materials = Json::array();
    for (const OfferedMaterial& material : offer.materials) {
        materials.push_back(
            {{"material_id",
              {{"module_id", moduleKey(offer, material.moduleId)}, {"id", material.id}}},
             {"base_version", material.baseVersion},
             {"target_version", material.version},
             {"is_delete", false}});
    }
    return {{"full_packet_diff",
             {{"channel_id", run.channel},
              {"start_version", run.version},
              {"target_version", offer.version},
              {"rely_channels", Json::array()},
              {"modules", modules},
              {"materials", materials},
              {"need_migration_modules", Json::array()},
              {"is_delete", false}}}};
}

Json packetMeta(const Offer& offer) {
    Json meta = {{"change_log", "Packet " + offer.version}, {"base_version", ""}};
    if (!offer.restartTray.empty()) {
        meta["extends"] = {{"restart_tray", offer.restartTray}};
    }
    return {{"version", 1}, {"meta", meta}};
}

Json materialMeta(const OfferedMaterial& material) {
    return {{"version", 1},
            {"meta",
             {{"file_id", material.fileId},
              {"file_type", 1},
              {"md5", material.md5},
              {"file_hash", material.md5},
              {"execute_type", 1},
              {"execute_param", ""},
              {"is_referenced", true},
              {"extends", material.extends},
              {"create_time", {{"seconds", 1760000000}, {"nanos", 0}}},
              {"update_time", {{"seconds", 1760000000}, {"nanos", 0}}}}}};
}

Json materialMetas(const Offer& offer) {
    Json metas = Json::array();
    for (const OfferedMaterial& material : offer.materials) {
        metas.push_back(materialMeta(material));
    }
    return {{"metas", metas}};
}

} // namespace

std::string answerTo(std::size_t question, const Offer& offer, const ExpectedRun& run,
                     const std::string& address) {
    switch (question) {
    case 0:
        return upgradePacket(offer).dump();
    case 1:
        return packetDiff(offer, run).dump();
    case 2:
        return packetMeta(offer).dump();
    case 3:
        return Json{{"normal_file_addr", address + "/storage"},
                    {"docker_file_addr", ""},
                    {"test_file_addr", address + "/storage-test"}}
            .dump();
    default:
        return materialMetas(offer).dump();
    }
}

} // namespace sandbox
