#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "utils/mutex.h"

/// How far an upgrade has come. The store may hold any other number.
enum UpgradeStatus : std::int32_t {
    upgradeFresh = 0,       ///< nothing known
    upgradeAnswered = 1,    ///< the server has told of it
    upgradeDownloading = 2, ///< a transfer was started
    upgradeDownloaded = 3,  ///< the package is on disk and the right one
    upgradeStarted = 4,     ///< the setup was started
    upgradeInstalled = 5,   ///< the client runs in the offered version
    upgradeBroken = 6,      ///< what is on disk is not the right package
};

/// The offer of a package and how far it has come. Shared by tasks, trace and sender, which
/// run on several threads: each operation locks by itself. Any thread.
class UpgradeData {
public:
    /// Takes over the server's answer. Throws nlohmann::json::exception when it is no JSON;
    /// what is missing or of another type leaves its field as it is.
    void fromResponse(const std::string& text);

    /// Takes over a stored text, as fromResponse does; nothing from the empty one.
    void fromStored(const std::string& text);

    /// Takes over the members of an offer; nothing from any JSON but an object.
    void readInfo(const nlohmann::json& object);

    /// The stored form: compact JSON of nine members. The user interface gets the same text.
    std::string toStored() const;

    bool getNeedUpgrade() const { return get(&Fields::needUpgrade); }
    std::string getVersion() const { return get(&Fields::version); }
    std::string getPackageMD5() const { return get(&Fields::packageMD5); }
    std::string getPackageURL() const { return get(&Fields::packageURL); }
    std::int64_t getFileSize() const { return get(&Fields::fileSize); }
    std::int32_t getStatus() const { return get(&Fields::status); }
    bool getIsUIUpgradeFinished() const { return get(&Fields::isUIUpgradeFinished); }

    void setNeedUpgrade(bool value) { set(&Fields::needUpgrade, value); }
    void setVersion(const std::string& value) { set(&Fields::version, value); }
    void setPackageMD5(const std::string& value) { set(&Fields::packageMD5, value); }
    void setPackageURL(const std::string& value) { set(&Fields::packageURL, value); }
    void setLocalPath(const std::string& value) { set(&Fields::localPath, value); }
    void setFileSize(std::int64_t value) { set(&Fields::fileSize, value); }
    void setStatus(std::int32_t value) { set(&Fields::status, value); }
    void setIsUIUpgradeFinished(bool value) { set(&Fields::isUIUpgradeFinished, value); }

private:
    struct Fields {
        bool needUpgrade = false;
        bool isForce = false; ///< travels on to the user interface, as `content` does
        std::string version;
        std::string packageMD5; ///< hexadecimal, in either case
        std::string packageURL;
        std::string content;   ///< release notes
        std::string localPath; ///< of the package on disk; never stored
        std::int64_t fileSize = 0;
        std::int32_t status = upgradeFresh;
        bool isUIUpgradeFinished = false; ///< the user had the setup started

        void readInfo(const nlohmann::json& object);
    };

    template <class Field>
    Field get(Field Fields::*field) const {
        MutexLock guard(lock);
        return fields.*field;
    }
    template <class Field>
    void set(Field Fields::*field, const Field& value) {
        MutexLock guard(lock);
        fields.*field = value;
    }

    mutable Mutex lock;
    Fields fields XR_GUARDED_BY(lock);
};
