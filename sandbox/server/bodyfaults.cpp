#include "sandbox/server/bodyfaults.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

namespace sandbox {
namespace {

using OrderedJson = nlohmann::ordered_json; // the order of members is part of what a fault says

constexpr std::int64_t bigNumber = 5'000'000'000;
constexpr char notUtf8 = '\xff';

/// Calls `change` for every value that holds no other ones.
template <class Change>
void forEachLeaf(OrderedJson& json, const Change& change) {
    if (!json.is_structured()) {
        change(json);
        return;
    }
    for (OrderedJson& value : json) {
        forEachLeaf(value, change);
    }
}

OrderedJson ofOtherKind(const OrderedJson& json) {
    if (json.is_object()) {
        OrderedJson array = OrderedJson::array();
        for (const OrderedJson& value : json) {
            array.push_back(ofOtherKind(value));
        }
        return array;
    }
    if (json.is_array()) {
        OrderedJson object = OrderedJson::object();
        for (std::size_t i = 0; i < json.size(); ++i) {
            object[std::to_string(i)] = ofOtherKind(json[i]);
        }
        return object;
    }
    return json.is_string()
               ? OrderedJson(static_cast<std::int64_t>(json.get_ref<const std::string&>().size()))
               : OrderedJson(json.dump());
}

/// The members of the root keep their names: a client that looks for them finds another kind.
std::string otherShape(OrderedJson json) {
    for (OrderedJson& value : json) {
        value = ofOtherKind(value);
    }
    return json.dump();
}

std::string withoutUtf8(OrderedJson json) {
    // A control character has one spelling in JSON, so it can be found again in the text.
    forEachLeaf(json, [](OrderedJson& value) {
        if (value.is_string()) {
            value = value.get<std::string>() + '\x01';
        }
    });
    const std::string mark = "\\u0001";
    std::string text = json.dump();
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; ++at) {
        text.replace(at, mark.size(), 1, notUtf8);
    }
    return text;
}

std::string withBigNumbers(OrderedJson json) {
    forEachLeaf(json, [](OrderedJson& value) {
        if (value.is_number_integer()) {
            value = value.get<std::int64_t>() + bigNumber;
        }
    });
    return json.dump();
}

std::string withCount(OrderedJson json, std::size_t count) {
    OrderedJson& metas = json["metas"];
    const OrderedJson last = metas.empty() ? OrderedJson::object() : OrderedJson(metas.back());
    while (metas.size() > count) {
        metas.erase(metas.size() - 1);
    }
    while (metas.size() < count) {
        metas.push_back(last);
    }
    return json.dump();
}

/// The meta's members with "extends" at the asked place.
void placeExtends(OrderedJson& meta, const std::string& as) {
    if (!meta.is_object() || !meta.contains("extends")) {
        return;
    }
    const OrderedJson extends = as == "null" ? OrderedJson() : OrderedJson(meta["extends"]);
    OrderedJson others = meta;
    others.erase("extends");
    meta = OrderedJson::object();
    if (as == "ahead") {
        meta["extends"] = extends;
    }
    meta.update(others);
    meta["extends"] = extends;
}

std::string withExtends(OrderedJson json, const std::string& as) {
    if (json.contains("meta")) {
        placeExtends(json["meta"], as);
    }
    if (json.contains("metas")) {
        for (OrderedJson& row : json["metas"]) {
            placeExtends(row["meta"], as);
        }
    }
    return json.dump();
}

std::string otherBytes(std::string body) {
    for (char& byte : body) {
        byte = static_cast<char>(byte ^ 0x55);
    }
    return body;
}

std::string otherLength(const std::string& body, std::int64_t by) {
    const auto size = static_cast<std::int64_t>(body.size());
    std::string changed = body;
    changed.resize(static_cast<std::size_t>(std::max<std::int64_t>(size + by, 0)), '\x55');
    return changed;
}

std::string changedJson(const Fault& fault, const std::string& body) {
    OrderedJson json = OrderedJson::parse(body);
    if (fault.name == "other-shape") {
        return otherShape(std::move(json));
    }
    if (fault.name == "not-utf8") {
        return withoutUtf8(std::move(json));
    }
    if (fault.name == "big-numbers") {
        return withBigNumbers(std::move(json));
    }
    if (fault.name == "meta-count") {
        return withCount(std::move(json), static_cast<std::size_t>(fault.number("count")));
    }
    return fault.name == "extends" ? withExtends(std::move(json), fault.text("as")) : body;
}

std::string changedBody(const Fault& fault, const std::string& body) {
    if (fault.name == "empty") {
        return "";
    }
    if (fault.name == "body") {
        return fault.text("body");
    }
    if (fault.name == "not-json") {
        return "<html>no JSON</html>";
    }
    if (fault.name == "deep") {
        const auto levels = static_cast<std::size_t>(fault.number("levels"));
        return std::string(levels, '[') + std::string(levels, ']');
    }
    if (fault.name == "other-bytes") {
        return otherBytes(body);
    }
    return fault.name == "other-length" ? otherLength(body, fault.number("by"))
                                        : changedJson(fault, body);
}

bool isOfBody(const Fault& fault) {
    static constexpr std::array<std::string_view, 11> names{
        "empty",       "body",       "not-json", "other-shape", "deep",        "not-utf8",
        "big-numbers", "meta-count", "extends",  "other-bytes", "other-length"};
    return std::find(names.begin(), names.end(), fault.name) != names.end();
}

} // namespace

std::optional<Answer> spoilt(const Fault& fault, const Answer& right) {
    if (fault.name == "status") {
        return Answer{static_cast<int>(fault.number("status")), "text/plain", "not now"};
    }
    if (fault.has("byte") && fault.number("byte") >= static_cast<std::int64_t>(right.body.size())) {
        return std::nullopt;
    }
    if (!isOfBody(fault)) {
        return right;
    }
    Answer changed{right.status, right.type, changedBody(fault, right.body)};
    return changed == right ? std::nullopt : std::optional(changed);
}

} // namespace sandbox
