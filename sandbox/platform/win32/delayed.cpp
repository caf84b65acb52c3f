#include "sandbox/platform/delayed.h"

#include <windows.h>

#include "platform/text.h"
#include "sandbox/platform/pendingrenames.h"

namespace sandbox {

namespace {

constexpr const wchar_t* sessionManager = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
constexpr const wchar_t* valueName = L"PendingFileRenameOperations";

/// With the zeros in it; empty when there is none. The list may grow between two looks.
std::wstring readValue() {
    std::wstring value;
    DWORD bytes = 0;
    LSTATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        value.resize(bytes / sizeof(wchar_t));
        status = RegGetValueW(HKEY_LOCAL_MACHINE, sessionManager, valueName, RRF_RT_REG_MULTI_SZ,
                              nullptr, value.data(), &bytes);
    }
    value.resize(status == ERROR_SUCCESS ? bytes / sizeof(wchar_t) : 0);
    return value;
}

} // namespace

PendingList pendingList(const std::filesystem::path& clientFolder) {
    return readPendingRenames(platform::toUtf8(readValue()),
                              platform::toUtf8(clientFolder.wstring()));
}

} // namespace sandbox
