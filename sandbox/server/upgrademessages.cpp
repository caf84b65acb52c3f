#include "sandbox/server/upgrademessages.h"

#include <nlohmann/json.hpp>

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* bundleId = "com.orvane.tulsar";
constexpr const char* tokenHeader = "brevtoken";

std::string spelledOut(const std::string& url, const std::string& address) {
    return url.rfind('/', 0) == 0 ? address + url : url;
}

Json answered(const Json& data) {
    return {{"code", 0}, {"message", "ok"}, {"data", data}};
}

} // namespace

std::string packageCheckBody(const ExpectedUpgrade& expected, const std::string& version) {
    return Json{{"platform", "tulsar.pc"},
                {"bundleId", bundleId},
                {"version", version},
                {"channelId", expected.channel},
                {"phone", expected.packagePhone},
                {"lang", expected.language}}
        .dump();
}

std::string fileCheckBody(const ExpectedUpgrade& expected) {
    Json info = Json::array();
    for (const auto& [type, version] : expected.files) {
        info.push_back({{"fileType", type}, {"fileVersion", version}});
    }
    return Json{{"bundleId", bundleId},
                {"osName", "windows"},
                {"osVersion", expected.osVersion},
                {"phone", expected.phone},
                {"info", info}}
        .dump();
}

std::string upgradeHeaderDifference(const Headers& headers, const std::string& token) {
    Headers others;
    std::size_t tokens = 0;
    for (const auto& header : headers) {
        const bool isToken = isHeader(header.first, tokenHeader) && header.second == token;
        tokens += isToken ? 1 : 0;
        if (!isToken || token.empty()) {
            others.push_back(header);
        }
    }
    std::string difference = headerDifference(others);
    if (!token.empty() && tokens != 1) {
        return "headers: expected exactly one \"BrevToken: " + token + "\", got " +
               std::to_string(tokens) + (difference.empty() ? "" : "; " + difference);
    }
    return difference;
}

std::string urlOf(const OfferedPackage& package, const std::string& address) {
    return spelledOut(package.url.value_or(upgradeFilesFolder + package.fileId), address);
}

std::string urlOf(const OfferedFile& file, const std::string& address) {
    return spelledOut(file.url.value_or(upgradeFilesFolder + file.fileId), address);
}

std::string packageAnswer(const OfferedPackage* package, const std::string& address) {
    if (package == nullptr) {
        return answered({{"needUpgrade", false}}).dump();
    }
    return answered({{"needUpgrade", true},
                     {"info",
                      {{"isForce", package->isForce},
                       {"version", package->version},
                       {"packageMD5", package->md5},
                       {"packageURL", urlOf(*package, address)},
                       {"content", package->content},
                       {"fileSize", package->size}}}})
        .dump();
}

std::string fileAnswer(const UpgradeOffer& offer, const std::string& address) {
    Json list = Json::array();
    for (const OfferedFile& file : offer.files) {
        list.push_back({{"fileType", file.type},
                        {"fileVersion", file.version},
                        {"fileMD5", file.md5},
                        {"fileURL", urlOf(file, address)},
                        {"fileSize", file.size}});
    }
    return answered({{"list", list}}).dump();
}

} // namespace sandbox
