#pragma once

namespace XN {

/// Deferred work for `void postTask(int, XN::Task*)` of xnbase.dll. Starts with a count
/// of 0: postTask adds a reference when it takes the object and releases it after run,
/// which comes once, on the host's task thread.
class Task {
public:
    virtual long addRef() = 0;  ///< slot 0; the new count
    virtual long release() = 0; ///< slot 1; the new count
    virtual void run() = 0;     ///< slot 2

protected:
    ~Task() = default;
};

} // namespace XN
