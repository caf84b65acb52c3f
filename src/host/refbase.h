#pragma once

#include <atomic>
#include <functional>
#include <utility>

#include "host/xntask.h"

namespace XN {

/// Base of the reference-counted objects that are handed to the host's modules.
class RefBase {
public:
    RefBase() = default;
    virtual ~RefBase() = default;
    RefBase(const RefBase&) = delete;
    RefBase& operator=(const RefBase&) = delete;

    virtual void onAddRef() {}  ///< runs on each add
    virtual void onRelease() {} ///< runs on each release
};

/// Holds the count of a T that derives from it. Starts at 0; made with new and owned by
/// its references: the release that takes the last one destroys it. Any thread.
template <class T>
class RefBaseImpl : public RefBase {
protected:
    long addReference() {
        onAddRef();
        return count.fetch_add(1, std::memory_order_relaxed) + 1;
    }

    long releaseReference() {
        onRelease();
        const long held = count.fetch_sub(1, std::memory_order_acq_rel);
        if (held == 1) {
            delete static_cast<T*>(this);
        }
        return held - 1;
    }

private:
    std::atomic<long> count = 0;
};

/// A bound function as deferred work.
class TaskFunctor final : public RefBaseImpl<TaskFunctor>, public Task {
public:
    explicit TaskFunctor(std::function<void()> bound) : function(std::move(bound)) {}

    long addRef() override { return addReference(); }
    long release() override { return releaseReference(); }
    void run() override {
        if (function) {
            function();
        }
    }

private:
    std::function<void()> function;
};

/// Holds one reference to the end of the scope. Keeps an object alive while it is handed
/// over, and frees it when nobody took it.
template <class T>
class ScopedRef {
public:
    explicit ScopedRef(T* held) : object(held) { object->addRef(); }
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): it does not follow an atomic count
    ~ScopedRef() { object->release(); }
    ScopedRef(const ScopedRef&) = delete;
    ScopedRef& operator=(const ScopedRef&) = delete;

    T* get() const { return object; }

private:
    T* object;
};

} // namespace XN
