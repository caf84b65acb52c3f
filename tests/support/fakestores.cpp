#include "support/fakestores.h"

#include <cstring>
#include <limits>

bool FakeSettings::getString(const char* key, char* buffer, std::uint32_t* size) {
    const std::lock_guard guard(mutex);
    const auto found = texts.find(key);
    if (found == texts.end()) {
        return false;
    }
    const auto needed = static_cast<std::uint32_t>(found->second.size() + 1);
    if (buffer) {
        if (failTextReads || *size < needed) {
            return false;
        }
        std::memcpy(buffer, found->second.c_str(), needed);
    }
    *size = needed;
    return true;
}

bool FakeSettings::getUInt64(const char* key, std::uint64_t* value) {
    const std::lock_guard guard(mutex);
    const auto found = numbers.find(key);
    if (found == numbers.end()) {
        return false;
    }
    *value = found->second;
    return true;
}

bool FakeSettings::getUInt32(const char* key, std::uint32_t* value) {
    std::uint64_t wide = 0;
    if (!getUInt64(key, &wide) || wide > std::numeric_limits<std::uint32_t>::max()) {
        return false;
    }
    *value = static_cast<std::uint32_t>(wide);
    return true;
}

bool FakeSettings::setString(const char* key, const char* value) {
    const std::lock_guard guard(mutex);
    texts[key] = value;
    ++writes;
    return true;
}

bool FakeSettings::setUInt64(const char* key, std::uint64_t value) {
    const std::lock_guard guard(mutex);
    numbers[key] = value;
    ++writes;
    return true;
}

bool FakeSettings::hasText(const std::string& key) {
    const std::lock_guard guard(mutex);
    return texts.count(key) > 0;
}

std::string FakeSettings::text(const std::string& key) {
    const std::lock_guard guard(mutex);
    return texts[key];
}

std::uint64_t FakeSettings::number(const std::string& key) {
    const std::lock_guard guard(mutex);
    return numbers[key];
}

int FakeVersions::getVersion(const char* path, char* buffer, int* length) {
    const auto found = entries.find(path);
    if (found != entries.end()) {
        std::memcpy(buffer, found->second.data(), found->second.size());
        *length = static_cast<int>(found->second.size());
    }
    return result;
}

int FakeVersions::updateVersion(const char* path, const char* version) {
    calls.push_back(std::string("update ") + path);
    entries[path] = version;
    return 0;
}

int FakeVersions::createVersion(const char* path, const char* version) {
    calls.push_back(std::string("create ") + path);
    entries[path] = version;
    return 0;
}

void FakeNotifications::post(int type, const void* data, std::uint32_t size) {
    posts.push_back({type, std::string(static_cast<const char*>(data), size)});
}

void FakeNotifications::notify(int type, const void* data) {
    class Notification final : public NC::INotification {
    public:
        Notification(int number, const void* record) : kind(number), bytes(record) {}
        int type() override { return kind; }
        const void* data() override { return bytes; }

    private:
        int kind;
        const void* bytes;
    };
    for (NC::Observer* observer : observers) {
        Notification notification(type, data);
        observer->onNotification(&notification);
    }
}
