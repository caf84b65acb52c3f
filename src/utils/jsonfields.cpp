#include "utils/jsonfields.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/log.h"
#include "host/settings.h"

namespace {

template <class Number>
constexpr std::int64_t least = std::numeric_limits<Number>::min();
template <class Number>
constexpr std::int64_t greatest = std::numeric_limits<Number>::max();

std::int64_t toInt64(const nlohmann::json& number) {
    if (number.is_number_unsigned()) {
        constexpr auto bound = static_cast<std::uint64_t>(greatest<std::int64_t>);
        return static_cast<std::int64_t>(std::min(number.get<std::uint64_t>(), bound));
    }
    if (number.is_number_integer()) {
        return number.get<std::int64_t>();
    }
    constexpr double bound = 9223372036854775808.0; // 2^63, the first that does not fit
    const auto value = number.get<double>();
    if (value >= bound) {
        return greatest<std::int64_t>;
    }
    return value < -bound ? least<std::int64_t> : static_cast<std::int64_t>(value);
}

template <class Number>
bool readNumber(const nlohmann::json& object, const char* key, Number& value) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_number()) {
        return false;
    }
    value = static_cast<Number>(std::clamp(toInt64(*found), least<Number>, greatest<Number>));
    return true;
}

} // namespace

namespace jsonfields {

bool read(const nlohmann::json& object, const char* key, std::string& value) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string()) {
        return false;
    }
    value = found->get_ref<const std::string&>();
    return true;
}

bool read(const nlohmann::json& object, const char* key, bool& value) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_boolean()) {
        return false;
    }
    value = found->get<bool>();
    return true;
}

bool read(const nlohmann::json& object, const char* key, std::int32_t& value) {
    return readNumber(object, key, value);
}

bool read(const nlohmann::json& object, const char* key, std::int64_t& value) {
    return readNumber(object, key, value);
}

std::string readStored(const char* key) {
    std::string text;
    readSettingString(key, text, "");
    if (!text.empty() && !nlohmann::json::accept(text)) {
        XLOG(logFault, "update plugin, stored text is no json, key:", key);
        return {};
    }
    return text;
}

std::string dump(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace jsonfields
