#pragma once

#include <cstdint>

#include "platform/modules.h"

/// COM-like objects of the client, made by `long CreateOrvObject(const GUID&, void**)`
/// of OrvBase.dll, XNGuardBase.dll and every module that a module id names. A made
/// object carries one reference, which its owner releases. Any thread.
namespace orv {

/// Laid out as the system's GUID.
struct GUID {
    std::uint32_t data1;
    std::uint16_t data2;
    std::uint16_t data3;
    std::uint8_t data4[8];

    friend bool operator==(const GUID&, const GUID&) = default;
};
static_assert(sizeof(GUID) == 16);

/// HRESULT-style results: negative means failure.
inline constexpr long ok = 0;
inline constexpr long noInterface = static_cast<std::int32_t>(0x80004002U);
inline constexpr long invalidArgument = static_cast<std::int32_t>(0x80070057U);

using CreateOrvObject = long (*)(const GUID& id, void** object);

class IUnknown {
public:
    virtual long QueryInterface(const GUID& id, void** object) = 0; ///< slot 0
    virtual unsigned long AddRef() = 0;                             ///< slot 1
    virtual unsigned long Release() = 0;                            ///< slot 2

protected:
    ~IUnknown() = default;
};

} // namespace orv

/// Which module stands behind a module id. From OrvBase.dll.
class IXModuleRegistry : public orv::IUnknown {
public:
    static constexpr orv::GUID id{
        0x62C4D866, 0xAC50, 0x4A39, {0xB2, 0xEC, 0xCA, 0x50, 0xE5, 0xAC, 0x94, 0xCD}};

    /// Slot 3. Null for an id that is not installed. Adds no reference.
    virtual platform::ModuleHandle resolve(const wchar_t* moduleId) = 0;

protected:
    ~IXModuleRegistry() = default;
};

/// Record of IXNBaseInfo::query for the operating system's version.
struct XOsVersionRecord {
    std::uint32_t size;
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t build;
    std::uint8_t rest[268]; ///< not read here
};
static_assert(sizeof(XOsVersionRecord) == 284);

/// Facts about the machine; module id "module.base".
class IXNBaseInfo : public orv::IUnknown {
public:
    static constexpr orv::GUID id{
        0xBE29AE26, 0xD1F3, 0x4E58, {0x84, 0x3D, 0x5D, 0x0A, 0x48, 0x5D, 0xFE, 0x24}};
    static constexpr std::uint32_t osVersionCode = 0x200100;

    virtual void reserved3() = 0;
    /// Slot 4. The record that the code asks for, null for an unknown one. Stays the
    /// object's, valid as long as it.
    virtual const void* query(std::uint32_t code, const std::uint32_t* value) = 0;

protected:
    ~IXNBaseInfo() = default;
};

/// The guard's base service; module id "module.xnguardbase".
class IXNGuardBase : public orv::IUnknown {
public:
    static constexpr orv::GUID id{
        0xED728A2F, 0x1C16, 0x41AE, {0xAB, 0x6E, 0xEA, 0x53, 0x52, 0x95, 0xDC, 0xBD}};

    virtual void reserved3() = 0;
    virtual void reserved4() = 0;
    virtual void reserved5() = 0;
    virtual void reserved6() = 0;
    virtual void reserved7() = 0;
    virtual void reserved8() = 0;
    virtual void reserved9() = 0;
    virtual void reserved10() = 0;
    virtual void reserved11() = 0;
    virtual void reserved12() = 0;
    /// Slot 13. Not 0 when a program of the client has that instance open.
    virtual int instanceExists(const wchar_t* name, int flag) = 0;

protected:
    ~IXNGuardBase() = default;
};

/// The easy interface of libcurl as a service; module id "module.libcurl". Options and
/// results are libcurl's numbers. Handles belong to the caller until cleaned up.
class IXCurlService : public orv::IUnknown {
public:
    static constexpr orv::GUID id{
        0x80FFA8B2, 0x9A3A, 0x4165, {0x87, 0x92, 0x28, 0x1D, 0xEA, 0xDD, 0x43, 0xB9}};

    virtual void* curl_easy_init() = 0;                              ///< slot 3
    virtual int curl_easy_setopt(void* handle, int option, ...) = 0; ///< slot 4
    virtual int curl_easy_perform(void* handle) = 0;                 ///< slot 5; blocks
    virtual void curl_easy_cleanup(void* handle) = 0;                ///< slot 6

protected:
    ~IXCurlService() = default;
};
