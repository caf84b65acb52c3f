#pragma once

#include <algorithm>
#include <iterator>
#include <string>

#include <nlohmann/json.hpp>

/// Members of a value that may be of any kind. What is answered lives as long as the value.
namespace sandbox::check {

/// The elements of a member that is an array; none when it is another kind or not there.
const nlohmann::json& listAt(const nlohmann::json& object, const char* member);
/// The member that is an object, or an empty one.
const nlohmann::json& objectAt(const nlohmann::json& object, const char* member);
/// The member that is a text, or an empty one.
const std::string& textAt(const nlohmann::json& object, const char* member);

/// Whether a value is a text of the list.
template <class List>
bool isOneOf(const List& list, const nlohmann::json& word) {
    return word.is_string() && std::find(std::begin(list), std::end(list),
                                         word.get_ref<const std::string&>()) != std::end(list);
}

} // namespace sandbox::check
