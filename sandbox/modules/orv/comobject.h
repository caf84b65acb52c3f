#pragma once

#include <atomic>

#include "host/orvobject.h"

namespace sandbox {

/// The id that every COM-like object answers to beside its own.
inline constexpr orv::GUID unknownId{0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/// The counted part of a COM-like object; it is made with one reference and deletes
/// itself with the last. Used as it stands it is an object that does nothing.
template <class Interface = orv::IUnknown>
class ComObject : public Interface {
public:
    explicit ComObject(const orv::GUID& interfaceId) : ownId(interfaceId) {}
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    long QueryInterface(const orv::GUID& wanted, void** object) override {
        if (!object) {
            return orv::invalidArgument;
        }
        if (wanted != ownId && wanted != unknownId) {
            *object = nullptr;
            return orv::noInterface;
        }
        AddRef();
        *object = static_cast<Interface*>(this);
        return orv::ok;
    }

    unsigned long AddRef() override { return ++references; }

    unsigned long Release() override {
        const unsigned long left = --references;
        if (left == 0) {
            delete this;
        }
        return left;
    }

protected:
    virtual ~ComObject() = default;

private:
    const orv::GUID ownId;
    std::atomic<unsigned long> references{1};
};

/// Hands a new object out through a factory's out-argument.
template <class Interface>
long handOut(Interface* made, void** object) {
    *object = made;
    return orv::ok;
}

} // namespace sandbox
