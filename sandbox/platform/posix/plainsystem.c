#define _POSIX_C_SOURCE 200809L /* for nanosleep; a C compiler in strict mode hides it */
#include "sandbox/platform/plainsystem.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

void* plainLoad(const wchar_t* file) {
    char path[1024] = "./"; /* without a slash the system's library folders would be searched */
    const size_t length = wcstombs(path + 2, file, sizeof path - 2);
    if (length >= sizeof path - 2) {
        return NULL;
    }
    for (char* at = strchr(path, '\\'); at; at = strchr(at, '\\')) {
        *at = '/';
    }
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
}

void* plainLoaded(const wchar_t* name) {
    char soname[256];
    if (wcstombs(soname, name, sizeof soname) >= sizeof soname) {
        return NULL;
    }
    void* const module = dlopen(soname, RTLD_NOW | RTLD_NOLOAD);
    if (module) {
        dlclose(module); /* the one who loaded it keeps it */
    }
    return module;
}

PlainFunction plainFind(void* module, const char* name) {
    void* const address = dlsym(module, name);
    PlainFunction function;
    memcpy(&function, &address, sizeof function); /* C has no cast from data to functions */
    return function;
}

void plainSleep(unsigned milliseconds) {
    const struct timespec time = {milliseconds / 1000, milliseconds % 1000 * 1000000};
    nanosleep(&time, NULL);
}
