#include "updatekelvar/fetch/kelvarfetch.h"

#include <utility>

#include "host/log.h"
#include "kelvar/api.pb.h"
#include "kelvar/types/extended_method/methods.pb.h"
#include "updatekelvar/fetch/kelvarhttp.h"
#include "updatekelvar/fetch/messages.h"
#include "updatekelvar/fetch/xpbjson.h"
#include "utils/utils.h"

namespace methods = kelvar::types::extended_method;

namespace {

constexpr const char* upgradePacketPath = "/PacketV2/GetUpgradePacket";
constexpr const char* fullPacketDiffPath = "/PacketV2/GetFullPacketDiff";
constexpr const char* packetMetaPath = "/PacketV2/GetPacketMeta";
constexpr const char* fileStorageAddrPath = "/FileV2/GetFileStorageAddr";
constexpr const char* materialMetaPath = "/MaterialV2/BatchGetMaterialMeta";

constexpr bool enumsAreNames = false;

std::string toJson(const google::protobuf::Message& message) {
    std::string text;
    XPbJson().toJsonString(message, text, enumsAreNames);
    return text;
}

/// Posts a body and hands the decoded answer to `receive`, null for none.
template <class Response>
void request(XKelvarHttp& http, const char* path, const std::string& body,
             std::function<void(const std::shared_ptr<Response>&)> receive) {
    auto step = [receive = std::move(receive)](const std::string& text) {
        if (text.empty()) {
            receive(nullptr);
            return;
        }
        auto response = std::make_shared<Response>();
        XPbJson().fromJsonString(text, response.get(), enumsAreNames); // no JSON: all defaults
        receive(response);
    };
    http.post(XEnvConfigRef().makeUrl(path), body, std::move(step));
}

/// Hands what `convert` makes of an answer to `callback`, null for no answer.
template <class Response, class Convert, class Callback>
auto converting(Convert convert, Callback callback) {
    return [convert, callback = std::move(callback)](const std::shared_ptr<Response>& response) {
        using Data = decltype(convert(*response));
        callback(response ? std::make_shared<Data>(convert(*response)) : nullptr);
    };
}

/// Base of the address that materials are loaded from.
std::string storageOf(const XFileStorageAddr& address) {
    std::string channelId;
    int updateTime = 0;
    bool testParam = false;
    const bool isTest = utils::readTestConfig(channelId, updateTime, testParam) && testParam;
    return isTest ? address.testFileAddr : address.normalFileAddr;
}

} // namespace

void XKelvarFetch::fetchUpgradePacket(const XUpgradePacketParam& param,
                                      Callback<XUpgradePacketData> callback) {
    methods::GetUpgradePacket_Request message;
    messages::fill(message, param);
    using Response = methods::GetUpgradePacket_Response;
    const auto convert = [](const Response& response) {
        return XUpgradePacketData{messages::read(response.target())};
    };
    request<Response>(*_getHttp(), upgradePacketPath, toJson(message),
                      converting<Response>(convert, std::move(callback)));
}

void XKelvarFetch::fetchFullPacketDiff(const XFullPacketDiffParam& param,
                                       Callback<XFullPacketDiffData> callback) {
    methods::GetFullPacketDiff_Request message;
    message.set_channel_id(param.channelId);
    message.set_start_ver(param.startVer);
    message.set_target_ver(param.targetVer);
    using Response = methods::GetFullPacketDiff_Response;
    const auto convert = [](const Response& response) {
        return messages::read(response.full_packet_diff());
    };
    request<Response>(*_getHttp(), fullPacketDiffPath, toJson(message),
                      converting<Response>(convert, std::move(callback)));
}

void XKelvarFetch::fetchPacketMeta(const XPacketKey& key, Callback<XPacketMetaData> callback) {
    kelvar::GetPacketMeta_Request message;
    messages::fill(*message.mutable_key(), key);
    using Response = kelvar::GetPacketMeta_Response;
    const auto convert = [](const Response& response) {
        return messages::read(response.meta());
    };
    request<Response>(*_getHttp(), packetMetaPath, toJson(message),
                      converting<Response>(convert, std::move(callback)));
}

void XKelvarFetch::fetchFileStorageAddr(Callback<XFileStorageAddr> callback) {
    using Response = methods::GetFileStorageAddr_Response;
    const auto convert = [](const Response& response) {
        return XFileStorageAddr{response.normal_file_addr(), response.test_file_addr()};
    };
    request<Response>(*_getHttp(), fileStorageAddrPath, {},
                      converting<Response>(convert, std::move(callback)));
}

void XKelvarFetch::fetchMaterialMeta(const std::vector<XMaterialVersionKey>& keys,
                                     const std::shared_ptr<XFileStorageAddr>& address,
                                     Callback<XBatchGetMaterialMetaData> callback) {
    kelvar::BatchGetMaterialMeta_Request message;
    for (const XMaterialVersionKey& key : keys) {
        messages::fill(*message.add_keys()->mutable_key(), key);
    }
    using Response = kelvar::BatchGetMaterialMeta_Response;
    auto step = [keys, address,
                 callback = std::move(callback)](const std::shared_ptr<Response>& response) {
        if (!response) {
            callback(nullptr);
            return;
        }
        const std::string storage = storageOf(*address);
        XLOG(logProgress, "update plugin, kelvar, fetch material meta, addr:", storage);
        std::shared_ptr<XBatchGetMaterialMetaData> data;
        // Rows are told by their place alone, so a partial answer is of no use.
        if (static_cast<std::size_t>(response->metas_size()) == keys.size()) {
            data = std::make_shared<XBatchGetMaterialMetaData>();
            data->materials.reserve(keys.size());
            for (int i = 0; i < response->metas_size(); ++i) {
                data->materials.push_back(messages::read(
                    response->metas(i).meta(), keys[static_cast<std::size_t>(i)], storage));
            }
        }
        Response().Swap(response.get()); // the run goes on in the callback, with many rows
        callback(data);
    };
    request<Response>(*_getHttp(), materialMetaPath, toJson(message), std::move(step));
}

std::shared_ptr<XKelvarHttp> XKelvarFetch::_getHttp() {
    if (!http) {
        http = std::make_shared<XKelvarHttp>();
    }
    return http;
}
