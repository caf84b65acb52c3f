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
