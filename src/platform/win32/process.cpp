#include "platform/process.h"

#include "platform/text.h"
#include "platform/win32/windowsapi.h"

#include <shlwapi.h>

#include <cstdlib>

namespace platform {

std::string executablePath() {
    char path[MAX_PATH];
    const DWORD length = ::GetModuleFileNameA(nullptr, path, MAX_PATH);
    return length < MAX_PATH ? std::string(path, length) : std::string();
}

std::string executableName() {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return length < MAX_PATH ? toUtf8(::PathFindFileNameW(path)) : std::string();
}

void endProcess(const std::string& title, const std::string& text, int exitCode) {
    ::MessageBoxW(nullptr, toWide(text).c_str(), toWide(title).c_str(), MB_OK | MB_ICONERROR);
    ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(exitCode));
    std::abort();
}

void abortProcess() {
    constexpr UINT invalidParameter = 0xC0000417; // STATUS_INVALID_CRUNTIME_PARAMETER
    ::TerminateProcess(::GetCurrentProcess(), invalidParameter);
    std::abort();
}

} // namespace platform
