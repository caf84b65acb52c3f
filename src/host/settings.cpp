#include "host/settings.h"

#include <vector>

#include "host/hostmodules.h"

namespace {

template <class Number>
bool readNumber(bool (IKeyValueStore::*get)(const char*, Number*), const char* key, Number* value,
                const Number* defaultValue) {
    IKeyValueStore* store = hostmodules::getKV();
    if (!store || !(store->*get)(key, value)) {
        *value = *defaultValue;
        return false;
    }
    return true;
}

bool readText(const char* key, std::string& value) {
    IKeyValueStore* store = hostmodules::getKV();
    if (!store) {
        return false;
    }
    std::uint32_t size = 0;
    store->getString(key, nullptr, &size);
    if (size == 0) {
        return false;
    }
    std::vector<char> buffer(std::size_t{size} + 1); // one more: the text ends in any case
    if (!store->getString(key, buffer.data(), &size)) {
        return false;
    }
    value = buffer.data();
    return true;
}

} // namespace

bool readSettingString(const char* key, std::string& value, const std::string& defaultValue) {
    if (readText(key, value)) {
        return true;
    }
    value = defaultValue;
    return false;
}

bool readSettingUInt64(const char* key, std::uint64_t* value, const std::uint64_t* defaultValue) {
    return readNumber(&IKeyValueStore::getUInt64, key, value, defaultValue);
}

bool readSettingUInt32(const char* key, std::uint32_t* value, const std::uint32_t* defaultValue) {
    return readNumber(&IKeyValueStore::getUInt32, key, value, defaultValue);
}

bool writeSettingString(const char* key, const std::string& value) {
    IKeyValueStore* store = hostmodules::getKV();
    return store && store->setString(key, value.c_str());
}

bool writeSettingUInt64(const char* key, std::uint64_t value) {
    IKeyValueStore* store = hostmodules::getKV();
    return store && store->setUInt64(key, value);
}
