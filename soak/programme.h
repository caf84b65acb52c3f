#pragma once

#include <span>

/// What goes wrong in the soak, in a fixed order, over and over.
namespace soak {

/// One fault that is switched on and off again.
struct Turn {
    const char* name;
    const char* faults = "[]"; ///< of servers and modules, as scenarios tell them
    const char* set = "";      ///< words of "xsandbox set" while it is on
    const char* unset = "";    ///< the same when it is off
    const char* words = "";    ///< of the user interface, while it is on
    const char* wordsOff = ""; ///< the same when it is off
    const char* held = "";     ///< file of the client that is in use while it is on
    const char* does = "";     ///< what nothing but it brings about, as `done` names it
    bool setupFails = false;   ///< a package comes whose setup changes nothing
    bool mutesInstall = false; ///< mute mode comes when a transfer has stopped
};

std::span<const Turn> programme();

} // namespace soak
