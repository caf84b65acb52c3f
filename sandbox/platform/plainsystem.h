/* What a host in plain C asks of the system. Plain C itself; needs no other header. */
#ifndef SANDBOX_PLATFORM_PLAINSYSTEM_H
#define SANDBOX_PLATFORM_PLAINSYSTEM_H

#include <wchar.h>

typedef void (*PlainFunction)(void); /* to be cast to what it is */

/* The module of that file, relative to the current folder, which is the client's: the one in
 * the process, else loaded. One reference each call. Null when it cannot be loaded. */
void* plainLoad(const wchar_t* file);

/* The module of that name when it is in the process, else null. Takes no reference. */
void* plainLoaded(const wchar_t* name);

/* Null when the module has no such export. */
PlainFunction plainFind(void* module, const char* name);

void plainSleep(unsigned milliseconds);

#endif
