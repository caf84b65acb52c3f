#pragma once

#include <atomic>
#include <memory>

#include "xevent.h"
#include "xupdate.h"

/// The stand-alone loop behind StartKelvarService, with a channel of its own. It does not
/// pass the manager, so mute mode does not stop it. One a process, never destroyed.
class XKelvarServiceRunner {
public:
    static XKelvarServiceRunner& instance();

    /// Starts the loop's thread. A thread that finds the loop running ends at once. Throws
    /// std::system_error when no thread can be started.
    void start();

private:
    XKelvarServiceRunner() = default;
    [[noreturn]] void loop();

    std::shared_ptr<IUpdate> channel;
    std::atomic<bool> started = false;
    std::shared_ptr<Event> wakeEvent; ///< serves as a sleep: nothing ever signals it
};
