#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/ifileversionstore.h"
#include "host/ikeyvaluestore.h"
#include "host/notificationcenter.h"
#include "host/usercenter.h"

/// Settings in a map. Numbers and texts are kept apart.
class FakeSettings final : public IKeyValueStore {
public:
    bool getString(const char* key, char* buffer, std::uint32_t* size) override;
    bool getUInt64(const char* key, std::uint64_t* value) override;
    bool getUInt32(const char* key, std::uint32_t* value) override;
    bool setString(const char* key, const char* value) override;
    bool setUInt64(const char* key, std::uint64_t value) override;

    void put(const std::string& key, const std::string& value) {
        setString(key.c_str(), value.c_str());
    }
    void put(const std::string& key, std::uint64_t value) { setUInt64(key.c_str(), value); }
    bool hasText(const std::string& key);
    std::string text(const std::string& key);
    std::uint64_t number(const std::string& key);

    bool failTextReads = false; ///< the size is told, the text is not
    int writes = 0;

private:
    std::mutex mutex;
    std::map<std::string, std::string> texts;
    std::map<std::string, std::uint64_t> numbers;
};

/// Versions in a map, with the calls that wrote them.
class FakeVersions final : public IFileVersionStore {
public:
    int getVersion(const char* path, char* buffer, int* length) override;
    int updateVersion(const char* path, const char* version) override;
    int createVersion(const char* path, const char* version) override;

    std::map<std::string, std::string> entries;
    std::vector<std::string> calls; ///< "update path" or "create path"
    int result = 0;                 ///< what getVersion answers
};

class FakeUserState final : public uc::IUserState {
public:
    void reserved0() override {}
    void reserved1() override {}
    bool isValid() override { return valid; }
    const char* token() override { return tokenText.c_str(); }
    const char* identity() override { return identityText.c_str(); }
    void reserved5() override {}
    const char* phone() override { return phoneText.c_str(); }

    bool present = true;
    bool valid = true;
    std::string tokenText = "token";
    std::string identityText = "1001-2002-x";
    std::string phoneText;
};

/// A user centre with a user logged in.
class FakeUserCenter final : public uc::IUserCenter, public uc::IUserStateSource {
public:
    uc::IUserState* tokenState() override { return tokenPart.present ? &tokenPart : nullptr; }
    uc::IUserState* deviceState() override { return devicePart.present ? &devicePart : nullptr; }
    uc::IUserState* serviceState() override { return servicePart.present ? &servicePart : nullptr; }
    void reserved3() override {}
    uc::IUserStateSource* stateSource() override { return this; }
    void registerObserver(uc::IUserStateObserver* observer) override {
        observers.push_back(observer);
    }

    FakeUserState tokenPart;
    FakeUserState devicePart;
    FakeUserState servicePart;
    std::vector<uc::IUserStateObserver*> observers;
};

/// Records what is posted and can notify.
class FakeNotifications final : public NC::INotificationCenter {
public:
    struct Post {
        int type;
        std::string record;
    };

    void registerObserver(NC::Observer* observer) override { observers.push_back(observer); }
    void reserved1() override {}
    void post(int type, const void* data, std::uint32_t size) override;

    /// Brings a notification to the observers, as another module's post would.
    void notify(int type, const void* data);

    std::vector<Post> posts;

private:
    std::vector<NC::Observer*> observers;
};
