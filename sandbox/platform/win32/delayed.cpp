#include "sandbox/platform/delayed.h"

#include <windows.h>

#include "platform/text.h"
#include "sandbox/platform/pendingrenames.h"

namespace sandbox {

namespace {

constexpr const wchar_t* sessionManager = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
constexpr const wchar_t* valueName = L"PendingFileRenameOperations";

} // namespace

PendingList pendingList(const std::filesystem::path& clientFolder) {
    std::wstring value; // with the zeros in it
    DWORD bytes = 0;
    LSTATUS status = ERROR_MORE_DATA; // also where the list has grown between two looks
    while (status == ERROR_MORE_DATA) {
        value.resize(bytes / sizeof(wchar_t));
        status = RegGetValueW(HKEY_LOCAL_MACHINE, sessionManager, valueName, RRF_RT_REG_MULTI_SZ,
                              nullptr, value.data(), &bytes);
    }
    if (status == ERROR_FILE_NOT_FOUND) {
        return {};
    }
    if (status != ERROR_SUCCESS) {
        return {{}, {"the list cannot be read, error " + std::to_string(status)}};
    }
    value.resize(bytes / sizeof(wchar_t));
    return readPendingRenames(platform::toUtf8(value), platform::toUtf8(clientFolder.wstring()));
}

} // namespace sandbox
