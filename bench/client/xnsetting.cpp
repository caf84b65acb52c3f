#include <cstring>
#include <map>
#include <mutex>

#include "bench/client/watch.h"
#include "host/ikeyvaluestore.h"
#include "host/notificationcenter.h"

// XNSetting.dll of a measured client: settings in memory, and one who waits for the
// notification that a run has placed its files.

namespace {

BenchWatch* watch = nullptr;

class Settings final : public IKeyValueStore {
public:
    bool getString(const char* key, char* buffer, std::uint32_t* size) override {
        const std::lock_guard lock(mutex);
        const auto found = texts.find(key);
        if (found == texts.end()) {
            return false;
        }
        const auto needed = static_cast<std::uint32_t>(found->second.size() + 1);
        const bool fits = buffer && *size >= needed;
        if (fits) {
            std::memcpy(buffer, found->second.c_str(), needed);
        }
        *size = needed;
        return fits || !buffer;
    }
    bool getUInt64(const char* key, std::uint64_t* value) override {
        const std::lock_guard lock(mutex);
        const auto found = numbers.find(key);
        if (found == numbers.end()) {
            return false;
        }
        *value = found->second;
        return true;
    }
    bool getUInt32(const char* /*key*/, std::uint32_t* /*value*/) override { return false; }
    bool setString(const char* key, const char* value) override {
        const std::lock_guard lock(mutex);
        texts[key] = value;
        return true;
    }
    bool setUInt64(const char* key, std::uint64_t value) override {
        const std::lock_guard lock(mutex);
        numbers[key] = value;
        return true;
    }

private:
    std::mutex mutex;
    std::map<std::string, std::string> texts;
    std::map<std::string, std::uint64_t> numbers;
};

class Center final : public NC::INotificationCenter {
public:
    void registerObserver(NC::Observer* /*observer*/) override {}
    void reserved1() override {}
    void post(int type, const void* /*data*/, std::uint32_t /*size*/) override {
        if (type == NC::kelvarVersionType) {
            watch->notified = nanoseconds();
        }
    }
};

} // namespace

extern "C" void benchWatch(BenchWatch* given) {
    watch = given;
}

extern "C" IKeyValueStore* GetKV() {
    static Settings& settings = *new Settings;
    return &settings;
}

extern "C" NC::INotificationCenter* GetNotificationCenter() {
    static Center& center = *new Center;
    return &center;
}
