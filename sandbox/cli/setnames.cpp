#include "sandbox/cli/setnames.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "host/settings.h"
#include "sandbox/cli/set.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* loginMember = "login";
constexpr const char* settingsInstance = "XNSETTINGUI.INSTANCE";
constexpr std::array<const char*, 3> loginStates{"token", "device", "service"};
constexpr std::array<const char*, 3> loginTexts{"identity", "tokenText", "phone"};

/// One of two words, or the boolean that they stand for.
bool readSwitch(const std::string& key, const Json& value, const char* yes, const char* no,
                const char* values) {
    if (!value.is_boolean() && value != yes && value != no) {
        refuseToSet(key, value, values);
    }
    return value.is_boolean() ? value.get<bool>() : value == yes;
}

template <class Names>
bool isOneOf(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// A member of what is stored, which anybody may have written.
Json& storedMember(Json& config, const char* member, Json&& otherwise) {
    Json& found = config[member];
    if (found.is_null()) {
        found = std::move(otherwise);
    } else if (found.type() != otherwise.type()) {
        throw std::runtime_error("what is stored as \"" + std::string(member) + "\" is no " +
                                 otherwise.type_name() + ", but " + found.dump());
    }
    return found;
}

void setLogin(Json& config, const std::string& key, const Json& value, const char* values) {
    if (value.is_object()) {
        checkLogin(value);
        storedMember(config, loginMember, Json::object()).merge_patch(value);
        return;
    }
    const bool isOn = readSwitch(key, value, "on", "off", values);
    Json& login = storedMember(config, loginMember, Json::object());
    for (const char* state : loginStates) {
        login[state] = isOn;
    }
}

void setState(Json& config, const std::string& key, const Json& value, const char* values) {
    const bool isOn = readSwitch(key, value, "on", "off", values);
    storedMember(config, loginMember, Json::object())[key] = isOn;
}

void setMuteMode(Json& config, const std::string& key, const Json& value, const char* values) {
    if (value != 0 && value != 1) {
        refuseToSet(key, value, values);
    }
    config[key] = value;
}

void setInstances(Json& config, const std::string& key, const Json& value, const char* values) {
    const auto isText = [](const Json& name) {
        return name.is_string();
    };
    if (!value.is_array() || !std::all_of(value.begin(), value.end(), isText)) {
        refuseToSet(key, value, values);
    }
    config[key] = value;
}

void setWindow(Json& config, const std::string& key, const Json& value, const char* values) {
    const bool isOpen = readSwitch(key, value, "open", "closed", values);
    Json others = Json::array();
    Json& instances = storedMember(config, "instances", Json::array());
    for (const Json& instance : instances) {
        if (instance != settingsInstance) {
            others.push_back(instance);
        }
    }
    if (isOpen) {
        others.push_back(settingsInstance);
    }
    instances = std::move(others);
}

void setText(Json& settings, const std::string& key, const Json& value, const char* values) {
    if (!value.is_string()) {
        refuseToSet(key, value, values);
    }
    settings[key] = value;
}

void setNumber(Json& settings, const std::string& key, const Json& value, const char* values) {
    if (!value.is_number_unsigned()) {
        refuseToSet(key, value, values);
    }
    settings[key] = value;
}

constexpr const char* anyText = "a text";
constexpr const char* anyNumber = "a number";

constexpr std::array<NameToSet, 16> names{{
    {"login", "on or off, for the three that follow", SetForm::word, false, setLogin},
    {"token", "on or off", SetForm::word, false, setState},
    {"device", "on or off", SetForm::word, false, setState},
    {"service", "on or off", SetForm::word, false, setState},
    {"muteMode", "0 or 1", SetForm::number, false, setMuteMode},
    {"settingsWindow", "open or closed", SetForm::word, false, setWindow},
    {"instances", "the names of all windows that are open, between commas", SetForm::list, false,
     setInstances},
    {settingkeys::updateType, "a number: 0 installs by itself, 1 asks the user", SetForm::number,
     true, setNumber},
    {settingkeys::language, anyText, SetForm::text, true, setText},
    {settingkeys::upgrade, anyText, SetForm::text, true, setText},
    {settingkeys::ignoreVersionList, anyText, SetForm::text, true, setText},
    {settingkeys::pkgLastCheckTime, anyNumber, SetForm::number, true, setNumber},
    {settingkeys::kelvarLastCheckTime, anyNumber, SetForm::number, true, setNumber},
    {settingkeys::kelvarTempFileList, anyText, SetForm::text, true, setText},
    {settingkeys::kelvarPaddingFileList, anyText, SetForm::text, true, setText},
    {settingkeys::fileList, anyText, SetForm::text, true, setText},
}};

} // namespace

std::span<const NameToSet> setNames() {
    return names;
}

const NameToSet& nameToSet(const std::string& key) {
    const auto* found = std::find_if(names.begin(), names.end(),
                                     [&](const NameToSet& name) { return key == name.key; });
    if (found == names.end()) {
        throw std::runtime_error("there is no \"" + key + "\" to be set; known are:\n" +
                                 namesToSet());
    }
    return *found;
}

void checkLogin(const Json& login) {
    for (const auto& [key, value] : login.items()) {
        const bool isState = isOneOf(loginStates, key);
        if (!isState && !isOneOf(loginTexts, key)) {
            throw std::runtime_error("there is no \"" + key + "\" of a login");
        }
        if (isState ? !value.is_boolean() : !value.is_string()) {
            refuseToSet(key, value, isState ? "true or false" : "a text");
        }
    }
}

void refuseToSet(const std::string& key, const Json& value, const char* values) {
    throw std::runtime_error(key + " cannot be " + value.dump() + ", but " + values);
}

} // namespace sandbox
