#include "sandbox/platform/plainsystem.h"

#include <windows.h>

void* plainLoad(const wchar_t* file) {
    return LoadLibraryW(file);
}

void* plainLoaded(const wchar_t* name) {
    return GetModuleHandleW(name);
}

PlainFunction plainFind(void* module, const char* name) {
    return (PlainFunction)GetProcAddress((HMODULE)module, name);
}

void plainSleep(unsigned milliseconds) {
    Sleep(milliseconds);
}
