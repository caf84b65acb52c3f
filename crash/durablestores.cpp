#include "crash/durablestores.h"

#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>

#include "crash/operations.h"

namespace crash {

std::string halfOf(const std::string& text) {
    return text.substr(0, text.size() / 2);
}

Stored readStores(const std::filesystem::path& file) {
    std::ifstream stream(file);
    const nlohmann::json json = nlohmann::json::parse(stream);
    Stored stored;
    json.at(0).get_to(stored.texts);
    json.at(1).get_to(stored.numbers);
    json.at(2).get_to(stored.versions);
    return stored;
}

void writeStores(const std::filesystem::path& file, const Stored& stored) {
    nlohmann::json json = nlohmann::json::array();
    json.push_back(stored.texts);
    json.push_back(stored.numbers);
    json.push_back(stored.versions);
    std::ofstream(file) << json.dump();
}

bool DurableSettings::getString(const char* key, char* buffer, std::uint32_t* size) {
    const Stored stored = readStores(file);
    const auto found = stored.texts.find(key);
    const std::size_t needed = found != stored.texts.end() ? found->second.size() + 1 : 0;
    if (needed == 0 || (buffer && *size < needed)) {
        return false;
    }
    if (buffer) {
        std::memcpy(buffer, found->second.c_str(), needed);
    }
    *size = static_cast<std::uint32_t>(needed);
    return true;
}

bool DurableSettings::getUInt64(const char* key, std::uint64_t* value) {
    const Stored stored = readStores(file);
    const auto found = stored.numbers.find(key);
    if (found != stored.numbers.end()) {
        *value = found->second;
    }
    return found != stored.numbers.end();
}

bool DurableSettings::getUInt32(const char* key, std::uint32_t* value) {
    std::uint64_t wide = 0;
    const bool found = getUInt64(key, &wide);
    *value = found ? static_cast<std::uint32_t>(wide) : *value;
    return found;
}

bool DurableSettings::setString(const char* key, const char* value) {
    const Counted counted(Operation::storeSetting, key);
    if (!counted.fails()) {
        Stored stored = readStores(file);
        stored.texts[key] = counted.isCut() ? halfOf(value) : value;
        writeStores(file, stored);
    }
    return !counted.fails();
}

bool DurableSettings::setUInt64(const char* key, std::uint64_t value) {
    const Counted counted(Operation::storeSetting, key);
    if (!counted.fails() && !counted.isCut()) {
        Stored stored = readStores(file);
        stored.numbers[key] = value;
        writeStores(file, stored);
    }
    return !counted.fails();
}

int DurableVersions::getVersion(const char* path, char* buffer, int* length) {
    const Stored stored = readStores(file);
    if (const auto found = stored.versions.find(path); found != stored.versions.end()) {
        *length = static_cast<int>(found->second.copy(buffer, bufferSize));
    }
    return 0;
}

int DurableVersions::updateVersion(const char* path, const char* version) {
    return store(path, version);
}

int DurableVersions::createVersion(const char* path, const char* version) {
    return store(path, version);
}

int DurableVersions::store(const char* path, const std::string& version) {
    const Counted counted(Operation::storeVersion, path);
    if (!counted.fails()) {
        Stored stored = readStores(file);
        stored.versions[path] = counted.isCut() ? halfOf(version) : version;
        writeStores(file, stored);
    }
    return counted.fails() ? 1 : 0;
}

} // namespace crash
