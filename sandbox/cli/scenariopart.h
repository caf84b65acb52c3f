#pragma once

#include <initializer_list>
#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

namespace sandbox {

/// Throws std::runtime_error, naming `what` and the member, when `part` is no object or has
/// a member that the format does not have: a misspelt expectation would expect nothing.
/// `comment` is always among the members.
void checkMembers(const std::string& what, const nlohmann::json& part,
                  std::initializer_list<const char*> members);

/// One object of a scenario while it is read. A member that is missing or of the wrong kind
/// is a std::runtime_error that names both. The JSON outlives the object.
class ScenarioPart {
public:
    /// With checkMembers; `what` names the part in messages.
    ScenarioPart(std::string what, const nlohmann::json& part,
                 std::initializer_list<const char*> members);

    bool has(const char* member) const { return json.contains(member); }

    template <typename T>
    T need(const char* member) const {
        if (!has(member)) {
            throw std::runtime_error(name + ": member \"" + member + "\" is missing");
        }
        try {
            return json.at(member).get<T>();
        } catch (const nlohmann::json::exception&) {
            throw std::runtime_error(name + ": member \"" + member + "\" is of the wrong kind");
        }
    }

    template <typename T>
    T get(const char* member, const T& otherwise) const {
        return has(member) ? need<T>(member) : otherwise;
    }
    std::string text(const char* member, const char* otherwise = "") const {
        return get<std::string>(member, otherwise);
    }
    /// The elements of an array; none when it is not there.
    nlohmann::json list(const char* member) const;
    /// The members of an object; none when it is not there.
    nlohmann::json object(const char* member) const;

private:
    const nlohmann::json& json;
    std::string name;
};

} // namespace sandbox
