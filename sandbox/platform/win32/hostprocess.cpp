#include "sandbox/platform/hostprocess.h"

#include <vector>
#include <windows.h>

namespace sandbox {

namespace {

constexpr DWORD longestPath = 32768;

} // namespace

std::filesystem::path executableFile() {
    std::vector<wchar_t> buffer(longestPath);
    const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), longestPath);
    return std::filesystem::path(buffer.data(), buffer.data() + length);
}

unsigned long threadNumber() {
    return GetCurrentThreadId();
}

std::tm localTime(std::time_t time) {
    std::tm result{};
    localtime_s(&result, &time);
    return result;
}

} // namespace sandbox
