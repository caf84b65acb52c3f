#include "sandbox/platform/hostprocess.h"

#include <memory>
#include <windows.h>
// After windows.h, whose types it uses.
#include <shellapi.h>

#include "platform/text.h"

namespace sandbox {

namespace {

constexpr DWORD longestPath = 32768;

struct LocalFreer {
    void operator()(void* memory) const { LocalFree(memory); }
};

} // namespace

std::filesystem::path executableFile() {
    std::vector<wchar_t> buffer(longestPath);
    const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), longestPath);
    return std::filesystem::path(buffer.data(), buffer.data() + length);
}

std::vector<std::string> ownArguments(int /*count*/, char** /*arguments*/) {
    // The narrow arguments have lost what the code page cannot spell.
    int count = 0;
    const std::unique_ptr<wchar_t*, LocalFreer> wide(CommandLineToArgvW(GetCommandLineW(), &count));
    std::vector<std::string> own;
    for (int i = 1; wide && i < count; ++i) {
        own.push_back(platform::toUtf8(wide.get()[i]));
    }
    return own;
}

long long processNumber() {
    return GetCurrentProcessId();
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
