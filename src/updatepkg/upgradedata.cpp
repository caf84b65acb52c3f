#include "updatepkg/upgradedata.h"

#include <nlohmann/json.hpp>

#include "utils/jsonfields.h"

namespace {

// Members of the stored form and, but for the first three, of the server's offer.
constexpr const char* needUpgradeKey = "needUpgrade";
constexpr const char* statusKey = "status";
constexpr const char* isUIUpgradeFinishedKey = "isUIUpgradeFinished";
constexpr const char* isForceKey = "isForce";
constexpr const char* versionKey = "version";
constexpr const char* packageMD5Key = "packageMD5";
constexpr const char* packageURLKey = "packageURL";
constexpr const char* contentKey = "content";
constexpr const char* fileSizeKey = "fileSize";

} // namespace

void UpgradeData::fromResponse(const std::string& text) {
    const nlohmann::json answer = nlohmann::json::parse(text);
    const auto data = answer.find("data");
    if (data == answer.end()) {
        return;
    }
    MutexLock guard(lock);
    fields.status = upgradeAnswered;
    if (!data->contains(needUpgradeKey)) {
        return;
    }
    jsonfields::read(*data, needUpgradeKey, fields.needUpgrade);
    if (const auto info = data->find("info"); info != data->end()) {
        fields.readInfo(*info);
    }
}

void UpgradeData::fromStored(const std::string& text) {
    if (text.empty()) {
        return;
    }
    const nlohmann::json stored = nlohmann::json::parse(text);
    MutexLock guard(lock);
    jsonfields::read(stored, needUpgradeKey, fields.needUpgrade);
    jsonfields::read(stored, statusKey, fields.status);
    jsonfields::read(stored, isUIUpgradeFinishedKey, fields.isUIUpgradeFinished);
    fields.readInfo(stored);
}

void UpgradeData::readInfo(const nlohmann::json& object) {
    MutexLock guard(lock);
    fields.readInfo(object);
}

std::string UpgradeData::toStored() const {
    MutexLock guard(lock);
    return jsonfields::dump({{needUpgradeKey, fields.needUpgrade},
                             {isForceKey, fields.isForce},
                             {versionKey, fields.version},
                             {packageMD5Key, fields.packageMD5},
                             {packageURLKey, fields.packageURL},
                             {contentKey, fields.content},
                             {fileSizeKey, fields.fileSize},
                             {statusKey, fields.status},
                             {isUIUpgradeFinishedKey, fields.isUIUpgradeFinished}});
}

void UpgradeData::Fields::readInfo(const nlohmann::json& object) {
    jsonfields::read(object, isForceKey, isForce);
    jsonfields::read(object, versionKey, version);
    jsonfields::read(object, packageMD5Key, packageMD5);
    jsonfields::read(object, packageURLKey, packageURL);
    jsonfields::read(object, contentKey, content);
    jsonfields::read(object, fileSizeKey, fileSize);
}
