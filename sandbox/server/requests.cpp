#include "sandbox/server/requests.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

namespace sandbox {
namespace {

using Json = nlohmann::json;

std::string line(const Json& json) {
    // The client's writer ends every text with one newline.
    return json.dump() + "\n";
}

std::string upgradePacketBody(const ExpectedRun& run) {
    Json params = nullptr;
    if (run.testSwitch) {
        params = {{"kelvar_test", "true"}};
    }
    return line({{"customer", {{"asset_id", {{"oid", run.oid}, {"id", run.id}}}, {"client", ""}}},
                 {"species_unique_code", ""},
                 {"channel_unique_code", ""},
                 {"version", run.version},
                 {"channel_code", run.channel},
                 {"params", params},
                 {"need_min_ver", false}});
}

Json askedChannel(const Offer& offer) {
    return {{"product_id", offer.productId}, {"id", offer.channelId}};
}

Json materialKey(const Offer& offer, const OfferedMaterial& material) {
    const Json module = {{"channel_id", askedChannel(offer)}, {"id", material.moduleId}};
    return {{"material_id", {{"module_id", module}, {"id", material.id}}},
            {"ver", material.version}};
}

std::string materialMetaBody(const Offer& offer) {
    Json body = nullptr; // with nothing to ask about, nothing is written
    for (const OfferedMaterial& material : offer.materials) {
        body["keys"].push_back({{"key", materialKey(offer, material)}, {"subscriber", ""}});
    }
    return line(body);
}

std::string excerpt(std::string_view text, std::size_t at) {
    const std::size_t from = at > 20 ? at - 20 : 0;
    std::string piece(text.substr(from, 60));
    for (std::size_t end = 0; (end = piece.find('\n', end)) != std::string::npos; end += 2) {
        piece.replace(end, 1, "\\n");
    }
    return "\"" + piece + "\"";
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

/// Headers that HTTP needs, and those that the server library adds by itself.
bool isTransportHeader(const std::string& name, const std::string& value) {
    static const std::array<std::string_view, 6> names{
        "host", "content-length", "remote_addr", "remote_port", "local_addr", "local_port"};
    return std::find(names.begin(), names.end(), name) != names.end() ||
           (name == "accept" && value == "*/*");
}

} // namespace

std::string expectedBody(std::size_t question, const Offer& offer, const ExpectedRun& run) {
    switch (question) {
    case 0:
        return upgradePacketBody(run);
    case 1:
        return line({{"channel_id", run.channel},
                     {"start_ver", run.version},
                     {"target_ver", offer.version}});
    case 2:
        return line({{"key", {{"channel_id", askedChannel(offer)}, {"ver", offer.version}}},
                     {"subscriber", ""}});
    case 4:
        return materialMetaBody(offer);
    default:
        return "";
    }
}

std::string bodyDifference(std::string_view expected, std::string_view body) {
    if (expected == body) {
        return "";
    }
    const auto end = std::mismatch(expected.begin(), expected.end(), body.begin(), body.end());
    const auto at = static_cast<std::size_t>(end.first - expected.begin());
    return "body differs at byte " + std::to_string(at) + ": expected " + excerpt(expected, at) +
           " (" + std::to_string(expected.size()) + " bytes), got " + excerpt(body, at) + " (" +
           std::to_string(body.size()) + " bytes)";
}

bool isHeader(const std::string& name, std::string_view lowerName) {
    return lowered(name) == lowerName;
}

std::string surplusHeaders(const Headers& headers) {
    std::string surplus;
    for (const auto& [name, value] : headers) {
        if (!isTransportHeader(lowered(name), value)) {
            surplus.append(surplus.empty() ? "" : ", ").append(name).append(": ").append(value);
        }
    }
    return surplus;
}

std::string headerDifference(const Headers& headers) {
    Headers others;
    std::copy_if(
        headers.begin(), headers.end(), std::back_inserter(others), [](const auto& header) {
            return !isHeader(header.first, "content-type") || header.second != "application/json";
        });
    const std::size_t contentTypes = headers.size() - others.size();
    const std::string surplus = surplusHeaders(others);
    if (contentTypes == 1 && surplus.empty()) {
        return "";
    }
    return "headers: expected exactly one \"Content-Type: application/json\", got " +
           std::to_string(contentTypes) +
           (surplus.empty() ? std::string() : " and beside it " + surplus);
}

} // namespace sandbox
