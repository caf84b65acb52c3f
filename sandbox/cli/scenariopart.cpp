#include "sandbox/cli/scenariopart.h"

#include <algorithm>
#include <string_view>

namespace sandbox {

namespace {

using Json = nlohmann::json;

} // namespace

void checkMembers(const std::string& what, const Json& part,
                  std::initializer_list<const char*> members) {
    if (!part.is_object()) {
        throw std::runtime_error(what + " is no object");
    }
    for (const auto& [key, value] : part.items()) {
        const bool known =
            std::any_of(members.begin(), members.end(),
                        [&name = key](std::string_view member) { return name == member; });
        if (!known && key != "comment") {
            throw std::runtime_error((what + ": there is no member \"").append(key).append("\""));
        }
    }
}

ScenarioPart::ScenarioPart(std::string what, const Json& part,
                           std::initializer_list<const char*> members)
    : json(part), name(std::move(what)) {
    checkMembers(name, json, members);
}

Json ScenarioPart::list(const char* member) const {
    Json found = get(member, Json(Json::array()));
    if (!found.is_array()) {
        throw std::runtime_error(name + ": member \"" + member + "\" is no array");
    }
    return found;
}

Json ScenarioPart::object(const char* member) const {
    Json found = get(member, Json(Json::object()));
    if (!found.is_object()) {
        throw std::runtime_error(name + ": member \"" + member + "\" is no object");
    }
    return found;
}

} // namespace sandbox
