#include "sandbox/platform/heldfile.h"

#include <windows.h>

namespace sandbox {

HeldFile::HeldFile(const std::filesystem::path& file) {
    // Without FILE_SHARE_DELETE nobody can move, replace or delete it.
    const HANDLE opened = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    handle = reinterpret_cast<std::intptr_t>(opened);
}

HeldFile::~HeldFile() {
    if (isHeld()) {
        CloseHandle(reinterpret_cast<HANDLE>(handle));
    }
}

} // namespace sandbox
