#include <array>

#include "sandbox/common/jsondepth.h"
#include "sandbox/doctor/checks.h"
#include "sandbox/doctor/settingnames.h"

namespace sandbox::doctor {
namespace {

using Json = nlohmann::json;

bool hasTexts(const Json& list) {
    for (const Json& element : list) {
        if (!element.is_string()) {
            return false;
        }
    }
    return true;
}

bool isTempList(const Json& json) {
    return json.is_array() && hasTexts(json);
}

bool isPaddingList(const Json& json) {
    return json.is_object() && hasTexts(json);
}

bool isEntry(const Json& entry) {
    return entry.is_object() && entry.value("fileType", Json()).is_number() &&
           entry.value("fileVersion", Json()).is_string() &&
           entry.value("fileMD5", Json()).is_string() && entry.value("fileURL", Json()).is_string();
}

bool isFileList(const Json& json) {
    if (!json.is_object() || !json.value("list", Json()).is_array()) {
        return false;
    }
    for (const Json& entry : json.at("list")) {
        if (!isEntry(entry)) {
            return false;
        }
    }
    return true;
}

/// Written as an array and read as an object, by design: both are right.
bool isIgnoreList(const Json& json) {
    const Json list = json.is_object() ? json.value("versions", Json()) : json;
    return list.is_array() && hasTexts(list);
}

bool isRecord(const Json& json) {
    return json.is_object() && json.value("status", Json()).is_number_integer() &&
           json.value("needUpgrade", Json()).is_boolean() &&
           json.value("version", Json()).is_string();
}

/// A setting whose text is JSON.
struct JsonSetting {
    const char* key;
    bool (*isRight)(const Json& json);
    const char* form;
};

constexpr std::array<JsonSetting, 5> jsonSettings{{
    {tempListSetting, isTempList, "an array of texts"},
    {paddingListSetting, isPaddingList, "an object of texts"},
    {fileListSetting, isFileList, "an object with the array \"list\" of files"},
    {ignoreListSetting, isIgnoreList, "an array of versions, or an object with it as \"versions\""},
    {packageSetting, isRecord, "an offer with its status"},
}};

constexpr std::array<const char*, 3> numberSettings{kelvarTimeSetting, packageTimeSetting,
                                                    updateTypeSetting};

void addKind(const char* key, const char* form, Report& report) {
    report.add(Code::settingKind, key, std::string(key) + " is not " + form);
}

void checkText(const JsonSetting& setting, const Json& value, Report& report) {
    if (!value.is_string()) {
        addKind(setting.key, "a text", report);
        return;
    }
    const auto& text = value.get_ref<const std::string&>();
    if (text.empty()) {
        return;
    }
    if (lineTooDeep(text)) {
        report.add(Code::settingKind, setting.key, std::string(setting.key) + ": " + tooDeep);
        return;
    }
    const Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded()) {
        report.add(Code::settingNoJson, setting.key,
                   std::string(setting.key) + " holds no JSON: " + text.substr(0, 40));
    } else if (!setting.isRight(json)) {
        addKind(setting.key, setting.form, report);
    }
}

} // namespace

void checkSettings(const Snapshot& snapshot, Report& report) {
    if (!snapshot.settings) {
        return;
    }
    const Json& settings = *snapshot.settings;
    for (const JsonSetting& setting : jsonSettings) {
        if (settings.contains(setting.key)) {
            checkText(setting, settings.at(setting.key), report);
        }
    }
    for (const char* key : numberSettings) {
        if (settings.contains(key) && !settings.at(key).is_number_unsigned()) {
            addKind(key, "a number", report);
        }
    }
    if (settings.contains(languageSetting) && !settings.at(languageSetting).is_string()) {
        addKind(languageSetting, "a text", report);
    }
}

} // namespace sandbox::doctor
