#include "sandbox/cli/set.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "host/settings.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* settingsInstance = "XNSETTINGUI.INSTANCE";
constexpr std::array<const char*, 3> loginStates{"token", "device", "service"};

[[noreturn]] void refuse(const std::string& key, const Json& value, const char* values) {
    throw std::runtime_error(key + " cannot be " + value.dump() + ", but " + values);
}

/// One of two words, or the boolean that they stand for.
bool readSwitch(const std::string& key, const Json& value, const char* yes, const char* no,
                const char* values) {
    if (!value.is_boolean() && value != yes && value != no) {
        refuse(key, value, values);
    }
    return value.is_boolean() ? value.get<bool>() : value == yes;
}

void setLogin(Json& config, const std::string& key, const Json& value, const char* values) {
    if (value.is_object()) {
        config["login"].merge_patch(value);
        return;
    }
    const bool isOn = readSwitch(key, value, "on", "off", values);
    for (const char* state : loginStates) {
        config["login"][state] = isOn;
    }
}

void setState(Json& config, const std::string& key, const Json& value, const char* values) {
    config["login"][key] = readSwitch(key, value, "on", "off", values);
}

void setMember(Json& config, const std::string& key, const Json& value, const char* values) {
    const bool fits = key == "muteMode" ? value.is_number_integer() : value.is_array();
    if (!fits) {
        refuse(key, value, values);
    }
    config[key] = value;
}

void setWindow(Json& config, const std::string& key, const Json& value, const char* values) {
    const bool isOpen = readSwitch(key, value, "open", "closed", values);
    Json others = Json::array();
    for (const Json& instance : config.value("instances", Json::array())) {
        if (instance != settingsInstance) {
            others.push_back(instance);
        }
    }
    if (isOpen) {
        others.push_back(settingsInstance);
    }
    config["instances"] = std::move(others);
}

void setText(Json& settings, const std::string& key, const Json& value, const char* values) {
    if (!value.is_string()) {
        refuse(key, value, values);
    }
    settings[key] = value;
}

void setNumber(Json& settings, const std::string& key, const Json& value, const char* values) {
    if (!value.is_number_unsigned()) {
        refuse(key, value, values);
    }
    settings[key] = value;
}

struct Name {
    const char* key;
    const char* values;
    void (*set)(Json& file, const std::string& key, const Json& value, const char* values);

    bool isSetting() const { return set == setText || set == setNumber; }
};

constexpr const char* anyText = "a text";
constexpr const char* anyNumber = "a number";

constexpr std::array<Name, 16> names{{
    {"login", "on or off, for the three that follow", setLogin},
    {"token", "on or off", setState},
    {"device", "on or off", setState},
    {"service", "on or off", setState},
    {"muteMode", "0 or 1", setMember},
    {"settingsWindow", "open or closed", setWindow},
    {"instances", "a list of all windows that are open", setMember},
    {settingkeys::updateType, "a number: 0 installs by itself, 1 asks the user", setNumber},
    {settingkeys::language, anyText, setText},
    {settingkeys::upgrade, anyText, setText},
    {settingkeys::ignoreVersionList, anyText, setText},
    {settingkeys::pkgLastCheckTime, anyNumber, setNumber},
    {settingkeys::kelvarLastCheckTime, anyNumber, setNumber},
    {settingkeys::kelvarTempFileList, anyText, setText},
    {settingkeys::kelvarPaddingFileList, anyText, setText},
    {settingkeys::fileList, anyText, setText},
}};

const Name& nameOf(const std::string& key) {
    const auto* found =
        std::find_if(names.begin(), names.end(), [&](const Name& name) { return key == name.key; });
    if (found == names.end()) {
        throw std::runtime_error("there is no \"" + key + "\" to be set; known are:\n" +
                                 namesToSet());
    }
    return *found;
}

/// The members of `change` that go into the one file or the other.
void applyTo(Json& file, const Json& change, bool settings) {
    for (const auto& [key, value] : change.items()) {
        const Name& name = nameOf(key);
        if (name.isSetting() != settings) {
            continue;
        }
        if (settings && value.is_null()) {
            file.erase(key);
        } else {
            name.set(file, key, value, name.values);
        }
    }
}

void update(const std::filesystem::path& file, const Json& change, bool settings) {
    if (!updateJson(file, [&](Json& json) { applyTo(json, change, settings); })) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

bool touches(const Json& change, bool settings) {
    return std::any_of(names.begin(), names.end(), [&](const Name& name) {
        return name.isSetting() == settings && change.contains(name.key);
    });
}

bool isNumber(const std::string& value) {
    return !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

void applySet(const Folders& folders, const Json& change) {
    for (const bool settings : {false, true}) {
        Json tried = Json::object(); // so that a wrong member leaves both files alone
        applyTo(tried, change, settings);
    }
    if (touches(change, false)) {
        update(folders.config(), change, false);
    }
    if (touches(change, true)) {
        update(folders.settings(), change, true);
    }
}

Json readChange(const std::vector<std::string>& arguments) {
    Json change = Json::object();
    for (const std::string& argument : arguments) {
        const std::size_t sign = argument.find('=');
        if (sign == std::string::npos) {
            throw std::runtime_error("\"" + argument + "\" is not of the form KEY=VALUE");
        }
        const std::string key = argument.substr(0, sign);
        const std::string value = argument.substr(sign + 1);
        const bool wantsText = nameOf(key).set == setText;
        change[key] = isNumber(value) && !wantsText ? Json(std::stoull(value)) : Json(value);
    }
    return change;
}

std::string namesToSet() {
    std::string lines;
    for (const Name& name : names) {
        lines += std::string("  ") + name.key + ": " + name.values + "\n";
    }
    return lines;
}

} // namespace sandbox
