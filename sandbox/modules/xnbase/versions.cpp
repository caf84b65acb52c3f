#include <cstring>
#include <map>
#include <string>

#include "host/xnbase.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/faults/clientfaults.h"
#include "utils/mutex.h"

namespace {

constexpr int done = 0;
constexpr int failed = -1;

class VersionStore final : public IFileVersionStore {
public:
    VersionStore() {
        const auto stored = sandbox::readJson(sandbox::processFolders().versions());
        if (!stored || !stored->is_object()) {
            return;
        }
        for (const auto& [path, value] : stored->items()) {
            if (value.is_string()) {
                entries[sandbox::comparablePath(path)] = {path, value.get<std::string>()};
            }
        }
    }

    int getVersion(const char* path, char* buffer, int* length) override {
        if (!path || !buffer || !length) {
            return failed;
        }
        *length = 0;
        MutexLock lock(mutex);
        const auto found = entries.find(sandbox::comparablePath(path));
        if (found == entries.end()) {
            return done;
        }
        const std::string& version = found->second.version;
        if (version.size() >= bufferSize) {
            return failed;
        }
        std::memcpy(buffer, version.c_str(), version.size() + 1);
        *length = static_cast<int>(version.size());
        return done;
    }

    int updateVersion(const char* path, const char* version) override {
        return put(path, version, false);
    }

    int createVersion(const char* path, const char* version) override {
        return put(path, version, true);
    }

private:
    struct Entry {
        std::string path; ///< as it was first spelled
        std::string version;
    };
    using Entries = std::map<std::string, Entry>;

    int put(const char* path, const char* version, bool create) {
        if (!path || !version) {
            return failed;
        }
        MutexLock lock(mutex);
        const std::string key = sandbox::comparablePath(path);
        if (entries.contains(key) == create || isRefused(create)) {
            return failed;
        }
        Entries changed = entries;
        changed.try_emplace(key, Entry{path, {}}).first->second.version = version;
        if (!save(changed)) {
            return failed;
        }
        entries = std::move(changed);
        sandbox::emit(
            {{"kind", "version"}, {"path", path}, {"value", version}, {"created", create}});
        return done;
    }

    static bool isRefused(bool create) {
        const auto faults = sandbox::ClientFaults::read();
        return faults.meets("versions-read-only") || (create && faults.meets("versions-full"));
    }

    static bool save(const Entries& changed) {
        nlohmann::json json = nlohmann::json::object();
        for (const auto& [key, entry] : changed) {
            json[entry.path] = entry.version;
        }
        return sandbox::writeJson(sandbox::processFolders().versions(), json,
                                  sandbox::Durability::replaced);
    }

    Mutex mutex;
    Entries entries XR_GUARDED_BY(mutex); ///< by comparable path
};

} // namespace

extern "C" IFileVersionStore* getFileVer() {
    static VersionStore& store = *new VersionStore;
    return &store;
}

static_assert(std::is_same_v<decltype(&getFileVer), xnbase::getFileVer>);
