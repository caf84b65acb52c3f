#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sandbox/server/offer.h"

/// The five questions of the conversation: their order, their exact bodies, and what a
/// request has that it should not have.
namespace sandbox {

struct Question {
    std::string_view name;
    std::string_view path;
};

/// In the order in which a client asks them.
inline constexpr std::array<Question, 5> conversation{{
    {"GetUpgradePacket", "/PacketV2/GetUpgradePacket"},
    {"GetFullPacketDiff", "/PacketV2/GetFullPacketDiff"},
    {"GetPacketMeta", "/PacketV2/GetPacketMeta"},
    {"GetFileStorageAddr", "/FileV2/GetFileStorageAddr"},
    {"BatchGetMaterialMeta", "/MaterialV2/BatchGetMaterialMeta"},
}};

using Headers = std::vector<std::pair<std::string, std::string>>;

/// The body that a client sends with the question of that place, to the byte.
std::string expectedBody(std::size_t question, const Offer& offer, const ExpectedRun& run);

/// Where `body` leaves `expected`; empty when they are the same.
std::string bodyDifference(std::string_view expected, std::string_view body);

/// Whether a header has that name, which is told in lower case.
bool isHeader(const std::string& name, std::string_view lowerName);

/// The headers beside those that HTTP itself needs; empty when there are none.
std::string surplusHeaders(const Headers& headers);

/// What is wrong with the headers of a question; empty when there is exactly the one
/// header of the client beside what HTTP itself needs.
std::string headerDifference(const Headers& headers);

} // namespace sandbox
