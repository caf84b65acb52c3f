#include "sandbox/platform/otherprocess.h"

#include <windows.h>
// After windows.h, whose types it uses.
#include <psapi.h>

#include <array>
#include <memory>

namespace sandbox {
namespace {

constexpr DWORD endLimit = 5000;

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using ProcessHandle = std::unique_ptr<void, HandleCloser>;

ProcessHandle openProcess(long long id, DWORD access) {
    return ProcessHandle(OpenProcess(access, FALSE, static_cast<DWORD>(id)));
}

} // namespace

std::filesystem::path processFile(long long id) {
    const ProcessHandle process = openProcess(id, PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE);
    if (!process || WaitForSingleObject(process.get(), 0) != WAIT_TIMEOUT) {
        return {};
    }
    std::array<wchar_t, 1024> path{};
    auto length = static_cast<DWORD>(path.size());
    return QueryFullProcessImageNameW(process.get(), 0, path.data(), &length) != 0
               ? std::filesystem::path(path.data())
               : std::filesystem::path();
}

bool endProcessOf(long long id) {
    const ProcessHandle process = openProcess(id, PROCESS_TERMINATE | SYNCHRONIZE);
    if (!process) {
        return true;
    }
    TerminateProcess(process.get(), 0);
    return WaitForSingleObject(process.get(), endLimit) == WAIT_OBJECT_0;
}

bool isForgotten(long long id) {
    // An ended process stays as long as a handle to it is open.
    return !openProcess(id, SYNCHRONIZE);
}

std::uint64_t peakMemoryOf(long long id) {
    const ProcessHandle process = openProcess(id, PROCESS_QUERY_INFORMATION | PROCESS_VM_READ);
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    return process && GetProcessMemoryInfo(process.get(), &counters, sizeof(counters)) != 0
               ? counters.PeakWorkingSetSize
               : 0;
}

} // namespace sandbox
