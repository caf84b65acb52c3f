#pragma once

#include <string>

#include <json/forwards.h>

/// Text of JSON values as the update platform writes and reads it.
namespace jsontext {

/// Strict JSON: no comments, an object or an array as root, nested no deeper than 999
/// levels. False for any other text, with `root` undefined.
bool parse(const std::string& text, Json::Value& root);

/// One line and a newline, keys sorted, everything beyond ASCII escaped.
std::string write(const Json::Value& root);

} // namespace jsontext
