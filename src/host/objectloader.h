#pragma once

#include "host/orvobject.h"

/// Handle on a module id ("module.base", …): the factory of the module that stands
/// behind it. The registry that resolves ids is looked up once a process, at the first
/// use; a registry that is absent then stays absent. Any thread.
class XNModuleRef {
public:
    explicit XNModuleRef(const wchar_t* moduleId);

    /// orv::invalidArgument for a null `object`, orv::noInterface without the module or
    /// its factory, else the factory's answer.
    long create(const orv::GUID& interfaceId, void** object) const;

private:
    orv::CreateOrvObject factory = nullptr;
};

/// Holds a COM-like object and releases it at the end of the scope.
template <class T>
class ServicePtr {
public:
    /// The object of interface T::id behind a module id; null when there is none.
    explicit ServicePtr(const wchar_t* moduleId) {
        void* made = nullptr;
        if (XNModuleRef(moduleId).create(T::id, &made) >= 0) {
            object = static_cast<T*>(made);
        }
    }
    ~ServicePtr() {
        if (object) {
            object->Release();
        }
    }
    ServicePtr(const ServicePtr&) = delete;
    ServicePtr& operator=(const ServicePtr&) = delete;

    T* get() const { return object; }
    T* operator->() const { return object; }
    explicit operator bool() const { return object != nullptr; }

private:
    T* object = nullptr;
};
