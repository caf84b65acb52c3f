#include <windows.h>
#include <winternl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <fstream>
#include <tlhelp32.h>
#include <vector>

// Writes the number of handles that the processes of a name have into a file: handlecount.exe
// FILE PROGRAM. GetProcessHandleCount tells 0 under Wine, so the system's whole list is read. Its
// exit status is 1 when none of them runs or the system does not tell.

namespace {

constexpr auto handleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
constexpr NTSTATUS tooSmall = static_cast<NTSTATUS>(0xC0000004L);
constexpr std::size_t firstSize = 1'000'000;

/// One of the system's list; the number of the process comes first.
struct HandleEntry {
    ULONG process;
    UCHAR type;
    UCHAR flags;
    USHORT value;
    void* object;
    ACCESS_MASK access;
};

/// Nothing when the system does not tell.
std::vector<std::byte> systemHandles() {
    std::vector<std::byte> list(firstSize);
    ULONG length = 0;
    NTSTATUS status = 0;
    while ((status = NtQuerySystemInformation(handleInformation, list.data(),
                                              static_cast<ULONG>(list.size()), &length)) ==
           tooSmall) {
        list.resize(list.size() * 2);
    }
    if (status < 0) {
        list.clear();
    }
    return list;
}

std::vector<ULONG> processesOf(const wchar_t* program) {
    std::vector<ULONG> found;
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(all, &entry); more; more = Process32NextW(all, &entry)) {
        if (_wcsicmp(entry.szExeFile, program) == 0) {
            found.push_back(entry.th32ProcessID);
        }
    }
    CloseHandle(all);
    return found;
}

std::size_t countHandles(const std::vector<ULONG>& processes) {
    const std::vector<std::byte> list = systemHandles();
    if (list.empty()) {
        return 0;
    }
    ULONG length = 0;
    std::memcpy(&length, list.data(), sizeof length);
    std::size_t count = 0;
    for (ULONG i = 0; i < length; ++i) {
        HandleEntry entry{};
        std::memcpy(&entry, list.data() + alignof(HandleEntry) + i * sizeof entry, sizeof entry);
        count += std::count(processes.begin(), processes.end(), entry.process) > 0 ? 1U : 0U;
    }
    return count;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3) {
        return 2;
    }
    const std::size_t handles = countHandles(processesOf(arguments[2]));
    std::ofstream(arguments[1]) << handles << '\n';
    return handles == 0 ? 1 : 0;
}
