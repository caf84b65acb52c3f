#include <algorithm>
#include <optional>

#include <json/json.h>

#include "fuzz/bridgemessages.h"
#include "fuzz/fuzz.h"
#include "updatekelvar/fetch/jsontext.h"
#include "updatekelvar/fetch/xpbjson.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations" // the reader that the bridge uses

// JSON of the update platform into messages. Input: a letter for the kind of message, and the
// text.

namespace {

constexpr std::ptrdiff_t wellBelowTheDepth = 900;

/// The document with the elements of its arrays, read one at a time; nothing for no JSON.
std::optional<Json::Value> readInParts(const std::string& text) {
    jsontext::Document document;
    if (!document.parse(text)) {
        return std::nullopt;
    }
    Json::Value whole = document.root();
    const auto names = whole.isObject() ? whole.getMemberNames() : Json::Value::Members();
    for (const std::string& name : names) {
        if (whole[name].isArray()) {
            whole[name] = Json::Value(Json::arrayValue);
            if (!document.readElements(document.root()[name], [&](const Json::Value& element) {
                    whole[name].append(element);
                })) {
                return std::nullopt;
            }
        }
    }
    return document.parseUnread() ? std::optional(whole) : std::nullopt;
}

/// Read in parts, a text is what it is read at once; but one with a comment is refused.
void requireSameInParts(const std::string& text) {
    const auto isBracket = [](char c) {
        return c == '[' || c == '{';
    };
    if (std::count_if(text.begin(), text.end(), isBracket) > wellBelowTheDepth) {
        return;
    }
    Json::Value whole;
    const bool isJson = Json::Reader(Json::Features::strictMode()).parse(text, whole, false);
    const auto inParts = readInParts(text);
    fuzz::require(!inParts || (isJson && *inParts == whole), "parts are those of the whole", text);
    fuzz::require(inParts || !isJson || text.find('/') != std::string::npos,
                  "what is JSON is JSON in parts", text);
}

} // namespace

FUZZ_TARGET(bridgeread) {
    std::string text = input;
    const auto [message, enumAsName] = fuzz::takeBridgeCase(text);
    requireSameInParts(text);
    if (!XPbJson().fromJsonString(text, message.get(), enumAsName)) {
        fuzz::require(message->ByteSizeLong() == 0, "a text that is not read changes nothing");
        return;
    }
    fuzz::requireRoundTrip(*message, enumAsName);
}
