#include "bench/offer.h"

#include <nlohmann/json.hpp>

namespace bench {
namespace {

using Json = nlohmann::json;

constexpr const char* channel = "bench_channel_1.0";
constexpr const char* oldVersion = "1.2.0.1500";
constexpr const char* newVersion = "1.3.0.1600";

Json channelKey() {
    return {{"product_id", "product"}, {"id", channel}};
}

Json couple(const Material& material) {
    return {{"material_id",
             {{"id", material.id},
              {"module_id", {{"id", "/components"}, {"channel_id", channelKey()}}}}},
            {"base_version", oldVersion},
            {"target_version", newVersion},
            {"is_delete", false}};
}

Json diff(const std::vector<Material>& materials) {
    Json couples = Json::array();
    for (const Material& material : materials) {
        couples.push_back(couple(material));
    }
    return {{"channel_id", channel},
            {"start_version", oldVersion},
            {"target_version", newVersion},
            {"modules", Json::array()},
            {"materials", std::move(couples)}};
}

Json parametersOf(const Material& material) {
    return {{"osver", ""},
            {"file_path", material.path},
            {"file_md5", material.fileMd5},
            {"check_sys", "%sysver%>=\"6.1.7601\"&&%sysver%<\"11.0.0\""},
            {"check_app", "%appver%>=\"1.0.0.1001\"&&%appver%<\"2.0.0.0\""},
            {"non_cab", material.isCabinet ? "0" : "1"},
            {"dependent", ""},
            {"exec", ""}};
}

Json metaOf(const Material& material) {
    const Json time = {{"seconds", 1760000000}, {"nanos", 0}};
    return {{"file_id", material.id}, {"file_type", 1},
            {"md5", material.md5},    {"file_hash", material.md5},
            {"execute_type", 0},      {"execute_param", ""},
            {"is_referenced", true},  {"extends", parametersOf(material)},
            {"create_time", time},    {"update_time", time}};
}

} // namespace

std::string materialAnswer(const std::vector<Material>& materials) {
    Json metas = Json::array();
    for (const Material& material : materials) {
        metas.push_back({{"version", 1}, {"meta", metaOf(material)}});
    }
    const Json answer = {{"status", Json::array()}, {"metas", std::move(metas)}};
    return answer.dump();
}

std::string otherAnswer(const std::string& path, const std::vector<Material>& materials,
                        const std::string& address) {
    if (path == "/PacketV2/GetUpgradePacket") {
        const Json answer = {{"target", {{"channel_id", channelKey()}, {"ver", newVersion}}}};
        return answer.dump();
    }
    if (path == "/PacketV2/GetFullPacketDiff") {
        return Json{{"full_packet_diff", diff(materials)}}.dump();
    }
    if (path == "/PacketV2/GetPacketMeta") {
        return R"({"version":1,"meta":{"base_version":""}})";
    }
    return path == "/FileV2/GetFileStorageAddr" ? Json{{"normal_file_addr", address}}.dump() : "";
}

} // namespace bench
