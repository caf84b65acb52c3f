#pragma once

#include <cstdint>

/// The client's settings, from `IKeyValueStore* GetKV()` of XNSetting.dll. Borrowed:
/// held by that module, never freed here. Any thread.
class IKeyValueStore {
public:
    /// Slot 0. With a null buffer sets `*size` to the bytes needed, terminating zero
    /// included; with a buffer of `*size` bytes fills it. False when there is no value.
    virtual bool getString(const char* key, char* buffer, std::uint32_t* size) = 0;
    virtual bool getUInt64(const char* key, std::uint64_t* value) = 0; ///< slot 1
    virtual bool getUInt32(const char* key, std::uint32_t* value) = 0; ///< slot 2
    virtual bool setString(const char* key, const char* value) = 0;    ///< slot 3
    virtual bool setUInt64(const char* key, std::uint64_t value) = 0;  ///< slot 4

protected:
    ~IKeyValueStore() = default;
};
