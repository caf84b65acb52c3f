#include "platform/files.h"

#include "platform/lasterror.h"
#include "platform/win32/pathlimit.h"
#include "platform/win32/windowsapi.h"

#include <direct.h>
#include <io.h>
#include <share.h>
#include <shlwapi.h>

#include <memory>

namespace platform {

using win32::fits;

namespace {

struct CloseSearch {
    void operator()(HANDLE search) const { ::FindClose(search); }
};

} // namespace

bool fileExists(const std::string& path) {
    return fits(path) && ::PathFileExistsA(path.c_str()) == TRUE;
}

bool isFolder(const std::string& path) {
    return fits(path) && ::PathIsDirectoryA(path.c_str()) != FALSE;
}

bool canAccess(const std::string& path) {
    return fits(path) && ::_access(path.c_str(), 0) == 0;
}

bool makeFolder(const std::string& path) {
    return fits(path) && ::_mkdir(path.c_str()) == 0;
}

std::FILE* openFile(const std::string& path, const char* mode) {
    return fits(path) ? ::_fsopen(path.c_str(), mode, _SH_DENYNO) : nullptr;
}

std::optional<std::uint64_t> fileSize(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!fits(path) || !::GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)) {
        return std::nullopt;
    }
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        setLastError(errorAccessDenied);
        return std::nullopt;
    }
    return std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
}

std::optional<std::vector<FolderEntry>> listFolder(const std::string& path) {
    WIN32_FIND_DATAA data{};
    const HANDLE search =
        fits(path) ? ::FindFirstFileA((path + "\\*.*").c_str(), &data) : INVALID_HANDLE_VALUE;
    if (search == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    const std::unique_ptr<void, CloseSearch> closer(search);
    std::vector<FolderEntry> entries;
    do {
        entries.push_back(
            {data.cFileName, (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
    } while (::FindNextFileA(search, &data));
    return entries;
}

std::string systemPath(const std::string& path) {
    return fits(path) ? path : std::string();
}

} // namespace platform
