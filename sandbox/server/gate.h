#pragma once

#include <condition_variable>
#include <mutex>

namespace sandbox {

/// Holds a transfer back until somebody lets it go on. Any thread.
class Gate {
public:
    /// Blocks until the gate is open.
    void pass();

    /// Whether somebody waits.
    bool isHeld() const;

    /// For those who wait and those who come.
    void open();
    void shut();

private:
    mutable std::mutex guard;
    std::condition_variable opened;
    bool isOpen = false;
    int waiting = 0;
};

} // namespace sandbox
