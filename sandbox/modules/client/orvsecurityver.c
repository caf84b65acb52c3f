#include "sandbox/platform/plainsystem.h"

#include <stddef.h>

/* This module is loaded and freed at each tick for its channel, so it brings no C++ runtime of
 * its own: that takes slots and pools of the process at each load and gives some never back.
 * xnbase.dll, which stays, knows the answer. Without it there is none: -1. */
int GetChannelType(char* buffer, int* length) {
    typedef int (*ChannelType)(char*, int*);
    void* const base = plainLoaded(L"xnbase.dll");
    const ChannelType ask = base ? (ChannelType)plainFind(base, "sandboxChannelType") : NULL;
    return ask ? ask(buffer, length) : -1;
}
