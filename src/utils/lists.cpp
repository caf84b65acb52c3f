#include <optional>

#include <nlohmann/json.hpp>

#include "host/settings.h"
#include "utils/utils.h"

namespace {

template <class List>
void saveList(const char* key, const List& files) {
    if (!files.empty()) {
        writeSettingString(key, nlohmann::json(files).dump());
    }
}

/// The stored JSON; nothing when the value is empty.
std::optional<nlohmann::json> loadList(const char* key) {
    std::string text;
    readSettingString(key, text, "");
    if (text.empty()) {
        return std::nullopt;
    }
    return nlohmann::json::parse(text);
}

} // namespace

namespace utils {

void saveTempFileList(const std::vector<std::string>& files) {
    saveList(settingkeys::kelvarTempFileList, files);
}

void loadTempFileList(std::vector<std::string>& files) {
    const std::optional<nlohmann::json> list = loadList(settingkeys::kelvarTempFileList);
    if (!list) {
        return;
    }
    files.clear();
    if (!list->is_array()) {
        return;
    }
    for (const nlohmann::json& element : *list) {
        if (element.is_string()) {
            files.push_back(element.get<std::string>());
        }
    }
}

void clearTempFileList() {
    writeSettingString(settingkeys::kelvarTempFileList, "");
}

void savePaddingFileList(const std::map<std::string, std::string>& files) {
    saveList(settingkeys::kelvarPaddingFileList, files);
}

void loadPaddingFileList(std::map<std::string, std::string>& files) {
    const std::optional<nlohmann::json> list = loadList(settingkeys::kelvarPaddingFileList);
    if (!list) {
        return;
    }
    std::map<std::string, std::string> result;
    if (list->is_object()) {
        for (const auto& [target, waiting] : list->items()) {
            result[target] = waiting.get<std::string>();
        }
    }
    files = std::move(result);
}

void clearPaddingFileList() {
    writeSettingString(settingkeys::kelvarPaddingFileList, "");
}

} // namespace utils
