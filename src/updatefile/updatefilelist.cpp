#include "updatefile/updatefilelist.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/settings.h"
#include "utils/jsonfields.h"
#include "utils/utils.h"

namespace {

constexpr const char* listKey = "list";

} // namespace

const char* fileNameOfType(std::int32_t fileType) {
    const auto* const found =
        std::find_if(fileTypeNames.begin(), fileTypeNames.end(),
                     [fileType](const XFileTypeName& row) { return row.fileType == fileType; });
    return found != fileTypeNames.end() ? found->name : nullptr;
}

void XUpdateFileData::fromJson(const nlohmann::json& object) {
    jsonfields::read(object, "fileType", fileType);
    jsonfields::read(object, "fileVersion", fileVersion);
    jsonfields::read(object, "fileMD5", fileMD5);
    jsonfields::read(object, "fileURL", fileURL);
    std::string sizeText;
    if (jsonfields::read(object, "fileSize", sizeText)) {
        fileSize = utils::toInt(sizeText);
    } else {
        jsonfields::read(object, "fileSize", fileSize);
    }
}

nlohmann::json XUpdateFileData::toJson() const {
    return {{"fileType", fileType},
            {"fileVersion", fileVersion},
            {"fileMD5", fileMD5},
            {"fileURL", fileURL},
            {"fileSize", fileSize}};
}

void XUpdateFileList::erase(std::size_t index) {
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(index));
}

void XUpdateFileList::fromResponse(const std::string& text) {
    if (text.empty()) {
        return;
    }
    const nlohmann::json answer = nlohmann::json::parse(text);
    const auto data = answer.find("data");
    if (data == answer.end()) {
        return;
    }
    if (const auto list = data->find(listKey); list != data->end()) {
        _read(*list);
    }
}

void XUpdateFileList::fromStored(const std::string& text) {
    if (!text.empty()) {
        const nlohmann::json stored = nlohmann::json::parse(text);
        if (const auto list = stored.find(listKey); list != stored.end()) {
            _read(*list);
        }
    }
    _fill();
}

std::string XUpdateFileList::toStored() const {
    nlohmann::json stored;
    nlohmann::json& list = stored[listKey] = nlohmann::json::array();
    for (const Entry& entry : entries) {
        list.push_back(entry->toJson());
    }
    return jsonfields::dump(stored);
}

void XUpdateFileList::merge(const std::shared_ptr<XUpdateFileList>& other) {
    if (!other) {
        return;
    }
    for (const Entry& entry : other->entries) {
        if (entry && entry->hasUrl()) {
            removeType(entry->fileType);
            append(entry);
        }
    }
}

void XUpdateFileList::removeType(std::int32_t fileType) {
    if (const std::size_t index = _indexOf(fileType); index != size()) {
        erase(index);
    }
}

void XUpdateFileList::_read(const nlohmann::json& array) {
    if (!array.is_array()) {
        return;
    }
    for (const nlohmann::json& element : array) {
        const auto entry = std::make_shared<XUpdateFileData>();
        entry->fromJson(element);
        if (fileNameOfType(entry->fileType)) {
            append(entry);
        }
    }
}

void XUpdateFileList::_fill() {
    for (const XFileTypeName& row : fileTypeNames) {
        if (_indexOf(row.fileType) == size()) {
            append(std::make_shared<XUpdateFileData>());
            entries.back()->fileType = row.fileType;
        }
    }
}

std::size_t XUpdateFileList::_indexOf(std::int32_t fileType) const {
    const auto found = std::find_if(entries.begin(), entries.end(), [fileType](const Entry& entry) {
        return entry->fileType == fileType;
    });
    return static_cast<std::size_t>(found - entries.begin());
}

bool loadFileList(std::shared_ptr<XUpdateFileList>& out) {
    out = std::make_shared<XUpdateFileList>();
    out->fromStored(jsonfields::readStored(settingkeys::fileList));
    return true;
}

bool saveFileList(const std::shared_ptr<XUpdateFileList>& list) {
    writeSettingString(settingkeys::fileList, list->toStored());
    return true;
}
