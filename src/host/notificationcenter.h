#pragma once

#include <cstddef>
#include <cstdint>

/// The notification centre, from `NC::INotificationCenter* GetNotificationCenter()` of
/// XNSetting.dll. Borrowed. Any thread.
namespace NC {

class INotification {
public:
    virtual int type() = 0;         ///< slot 0
    virtual const void* data() = 0; ///< slot 1; the record of that type, valid in the call

protected:
    ~INotification() = default;
};

class Observer {
public:
    virtual void onNotification(INotification* notification) = 0; ///< slot 0

protected:
    ~Observer() = default;
};

class INotificationCenter {
public:
    virtual void registerObserver(Observer* observer) = 0; ///< slot 0; for good
    virtual void reserved1() = 0;
    /// Slot 2. The centre copies the record before it returns.
    virtual void post(int type, const void* data, std::uint32_t size) = 0;

protected:
    ~INotificationCenter() = default;
};

/// Type 7: commands of the user interface to the package channel, and the channel's events
/// to it. Both sides see both.
inline constexpr int packageType = 7;

/// Codes of type 7. Of a command only the code is read.
enum PackageCode : std::int32_t {
    commandCheck = 1,            ///< ask the server for a newer package
    commandDownload = 2,         ///< fetch the one that was offered
    commandInstall = 3,          ///< start its setup
    commandIgnore = 4,           ///< refuse the offered version until the next start
    commandCancel = 5,           ///< end the transfer
    eventUpgradeInfo = 100,      ///< data: the offer as JSON text
    eventDownloadStart = 101,    ///< no data
    eventDownloadProgress = 102, ///< data: percent in decimal, may be above 100
    eventDownloadFinish = 103,   ///< no data; the same after success and failure
    eventInstallFinish = 104,    ///< no data; the setup was started
};

/// Record of type 7.
struct PackageRecord {
    std::int32_t code = 0;
    char data[1024] = {}; ///< zero-terminated text; not to be looked at where there is none
};
static_assert(sizeof(PackageRecord) == 1028);
static_assert(offsetof(PackageRecord, data) == 4);

/// Type 14: an update of the Kelvar channel has put files in place.
inline constexpr int kelvarVersionType = 14;

/// Record of type 14.
struct KelvarVersionRecord {
    std::uint32_t reserved = 0;
    char text[128] = {}; ///< the version's bytes; no terminating zero when it has 128
};
static_assert(sizeof(KelvarVersionRecord) == 132);
static_assert(offsetof(KelvarVersionRecord, text) == 4);

} // namespace NC
