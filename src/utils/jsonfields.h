#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

/// Members of JSON that comes from a server or the settings, where anything may be missing
/// or of another type. Any thread.
namespace jsonfields {

/// Takes a member into `value` and tells so when it is there and of that type; else `value`
/// stays as it is. A number loses its fraction and is held to the range of `value`. `object`
/// may be any JSON.
bool read(const nlohmann::json& object, const char* key, std::string& value);
bool read(const nlohmann::json& object, const char* key, bool& value);
bool read(const nlohmann::json& object, const char* key, std::int32_t& value);
bool read(const nlohmann::json& object, const char* key, std::int64_t& value);

/// The text of a settings key. What is no JSON counts as empty, with a log line: a damaged
/// setting must not end the client at each of its starts.
std::string readStored(const char* key);

/// Compact text. Bytes that are not UTF-8 become U+FFFD.
std::string dump(const nlohmann::json& value);

} // namespace jsonfields
