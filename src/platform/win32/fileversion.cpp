#include "platform/fileversion.h"

#include "platform/imageversion.h"
#include "platform/win32/windowsapi.h"

#include <winver.h>

#include <vector>

namespace platform {

namespace {

constexpr DWORD fixedInfoSignature = 0xFEEF04BD;

} // namespace

std::optional<FileVersion> readFileVersion(const std::string& path) {
    // What the system trusts in a file is looked at before: a damaged one ends Wine's process.
    if (!readImageVersion(path)) {
        return std::nullopt;
    }
    DWORD ignored = 0;
    const DWORD size = ::GetFileVersionInfoSizeA(path.c_str(), &ignored);
    std::vector<BYTE> resource(size);
    void* translation = nullptr;
    void* fixedInfo = nullptr;
    UINT translationSize = 0;
    UINT fixedInfoSize = 0;
    if (size == 0 || !::GetFileVersionInfoA(path.c_str(), 0, size, resource.data()) ||
        !::VerQueryValueA(resource.data(), "\\VarFileInfo\\Translation", &translation,
                          &translationSize) ||
        !::VerQueryValueA(resource.data(), "\\", &fixedInfo, &fixedInfoSize) ||
        fixedInfoSize < sizeof(VS_FIXEDFILEINFO)) {
        return std::nullopt;
    }
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(fixedInfo);
    if (info.dwSignature != fixedInfoSignature) {
        return std::nullopt;
    }
    return FileVersion{HIWORD(info.dwFileVersionMS), LOWORD(info.dwFileVersionMS),
                       HIWORD(info.dwFileVersionLS), LOWORD(info.dwFileVersionLS)};
}

} // namespace platform
