#include <cstring>
#include <limits>
#include <string>

#include "host/ikeyvaluestore.h"
#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/faults/clientfaults.h"
#include "utils/mutex.h"

namespace {

/// The file is the store: other processes of the run write it too.
class SettingsStore final : public IKeyValueStore {
public:
    bool getString(const char* key, char* buffer, std::uint32_t* size) override {
        const nlohmann::json value = find(key);
        if (!size || !value.is_string()) {
            return false;
        }
        const auto& text = value.get_ref<const std::string&>();
        const auto needed = static_cast<std::uint32_t>(text.size() + 1);
        const bool fits = *size >= needed;
        *size = needed;
        if (buffer && fits) {
            std::memcpy(buffer, text.c_str(), needed);
        }
        return !buffer || fits;
    }

    bool getUInt64(const char* key, std::uint64_t* value) override { return getNumber(key, value); }
    bool getUInt32(const char* key, std::uint32_t* value) override { return getNumber(key, value); }

    bool setString(const char* key, const char* value) override {
        return value && put(key, std::string(value));
    }
    bool setUInt64(const char* key, std::uint64_t value) override { return put(key, value); }

private:
    nlohmann::json find(const char* key) {
        MutexLock lock(mutex);
        auto stored = sandbox::readJson(sandbox::processFolders().settings());
        if (stored && stored->is_object()) {
            values = std::move(*stored);
        }
        return key && values.contains(key) ? values[key] : nlohmann::json();
    }

    template <class Number>
    bool getNumber(const char* key, Number* number) {
        const nlohmann::json value = find(key);
        if (!number || !value.is_number_unsigned() ||
            value.get<std::uint64_t>() > std::numeric_limits<Number>::max()) {
            return false;
        }
        *number = value.get<Number>();
        return true;
    }

    bool put(const char* key, nlohmann::json value) {
        if (!key || sandbox::ClientFaults::read().meets("settings-read-only")) {
            return false;
        }
        MutexLock lock(mutex);
        nlohmann::json changed;
        if (!sandbox::updateJson(sandbox::processFolders().settings(), [&](nlohmann::json& stored) {
                stored[key] = value;
                changed = stored;
            })) {
            return false;
        }
        values = std::move(changed);
        sandbox::emit({{"kind", "setting"}, {"key", key}, {"value", std::move(value)}});
        return true;
    }

    Mutex mutex;
    /// What was read last stands in for a file that cannot be read.
    nlohmann::json values XR_GUARDED_BY(mutex) = nlohmann::json::object();
};

} // namespace

extern "C" IKeyValueStore* GetKV() {
    static SettingsStore& store = *new SettingsStore;
    return &store;
}
