#pragma once

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "host/ifileversionstore.h"
#include "host/ikeyvaluestore.h"
#include "host/notificationcenter.h"
#include "host/usercenter.h"
#include "support/reserved.h"

/// Settings in a map. Numbers and texts are kept apart.
class FakeSettings final : public IKeyValueStore {
public:
    bool getString(const char* key, char* buffer, std::uint32_t* size) override {
        const auto found = texts.find(key);
        const std::size_t needed = found != texts.end() ? found->second.size() + 1 : 0;
        if (needed == 0 || (buffer && (failTextReads || *size < needed))) {
            return false;
        }
        if (buffer) {
            std::memcpy(buffer, found->second.c_str(), needed);
        }
        *size = static_cast<std::uint32_t>(needed);
        return true;
    }
    bool getUInt64(const char* key, std::uint64_t* value) override { return read(key, value); }
    bool getUInt32(const char* key, std::uint32_t* value) override { return read(key, value); }
    bool setString(const char* key, const char* value) override {
        texts[key] = value;
        return ++writes > 0;
    }
    bool setUInt64(const char* key, std::uint64_t value) override {
        numbers[key] = value;
        return ++writes > 0;
    }

    void put(const std::string& key, const std::string& value) {
        setString(key.c_str(), value.c_str());
    }
    void put(const std::string& key, std::uint64_t value) { setUInt64(key.c_str(), value); }
    bool hasText(const std::string& key) const { return texts.count(key) > 0; }
    std::string text(const std::string& key) { return texts[key]; }
    std::uint64_t number(const std::string& key) { return numbers[key]; }

    bool failTextReads = false; ///< the size is told, the text is not
    int writes = 0;

private:
    template <class Number>
    bool read(const char* key, Number* value) {
        const auto found = numbers.find(key);
        if (found == numbers.end() || static_cast<Number>(found->second) != found->second) {
            return false;
        }
        *value = static_cast<Number>(found->second);
        return true;
    }

    std::map<std::string, std::string> texts;
    std::map<std::string, std::uint64_t> numbers;
};

/// Versions in a map, with the calls that wrote them.
class FakeVersions final : public IFileVersionStore {
public:
    int getVersion(const char* path, char* buffer, int* length) override {
        if (const auto found = entries.find(path); found != entries.end()) {
            *length = static_cast<int>(found->second.copy(buffer, found->second.size()));
        }
        return result;
    }
    int updateVersion(const char* path, const char* version) override {
        return write("update ", path, version);
    }
    int createVersion(const char* path, const char* version) override {
        return write("create ", path, version);
    }

    std::map<std::string, std::string> entries;
    std::vector<std::string> calls; ///< "update path" or "create path"
    int result = 0;                 ///< what getVersion answers

private:
    int write(const std::string& what, const char* path, const char* version) {
        calls.push_back(what + path);
        entries[path] = version;
        return 0;
    }
};

struct FakeUserState final : Reserved<uc::IUserState> {
    bool isValid() override { return valid; }
    const char* token() override { return tokenText; }
    const char* identity() override { return identityText.c_str(); }
    const char* phone() override { return phoneText; }

    bool present = true;
    bool valid = true;
    std::string identityText = "1001-2002-x";
    const char* tokenText = "token-1";
    const char* phoneText = "13800000000";
};

/// A user centre with a user logged in.
struct FakeUserCenter final : Reserved<uc::IUserCenter>, uc::IUserStateSource {
    uc::IUserState* tokenState() override { return tokenPart.present ? &tokenPart : nullptr; }
    uc::IUserState* deviceState() override { return devicePart.present ? &devicePart : nullptr; }
    uc::IUserState* serviceState() override { return servicePart.present ? &servicePart : nullptr; }
    uc::IUserStateSource* stateSource() override { return this; }
    void registerObserver(uc::IUserStateObserver* observer) override {
        observers.push_back(observer);
    }

    FakeUserState tokenPart;
    FakeUserState devicePart;
    FakeUserState servicePart;
    std::vector<uc::IUserStateObserver*> observers;
};

struct FakeNotification final : NC::INotification {
    FakeNotification(int type, const void* data) : kind(type), record(data) {}
    int type() override { return kind; }
    const void* data() override { return record; }

    int kind;
    const void* record;
};

/// Records what is posted.
struct FakeNotifications final : Reserved<NC::INotificationCenter> {
    struct Post {
        int type;
        std::string record;
    };

    void registerObserver(NC::Observer* observer) override { observers.push_back(observer); }
    void post(int type, const void* data, std::uint32_t size) override {
        posts.push_back({type, std::string(static_cast<const char*>(data), size)});
    }

    std::vector<Post> posts;
    std::vector<NC::Observer*> observers;
};
