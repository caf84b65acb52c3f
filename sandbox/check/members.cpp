#include "sandbox/check/members.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

/// Null when it is not there.
const Json* find(const Json& object, const char* member) {
    if (!object.is_object()) {
        return nullptr;
    }
    const auto found = object.find(member);
    return found == object.end() ? nullptr : &*found;
}

} // namespace

const Json& listAt(const Json& object, const char* member) {
    static const Json none = Json::array();
    const Json* found = find(object, member);
    return found != nullptr && found->is_array() ? *found : none;
}

const Json& objectAt(const Json& object, const char* member) {
    static const Json none = Json::object();
    const Json* found = find(object, member);
    return found != nullptr && found->is_object() ? *found : none;
}

const std::string& textAt(const Json& object, const char* member) {
    static const std::string none;
    const Json* found = find(object, member);
    return found != nullptr && found->is_string() ? found->get_ref<const std::string&>() : none;
}

} // namespace sandbox::check
