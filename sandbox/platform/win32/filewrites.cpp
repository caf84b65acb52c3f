#include "sandbox/platform/filewrites.h"

#include <windows.h>

namespace sandbox {

namespace {

class FileHandle {
public:
    FileHandle(const std::filesystem::path& file, DWORD access, DWORD disposition)
        : handle(CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             disposition, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    ~FileHandle() {
        if (valid()) {
            CloseHandle(handle);
        }
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    HANDLE get() const { return handle; }
    bool valid() const { return handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle;
};

bool write(const FileHandle& file, std::string_view bytes) {
    DWORD written = 0;
    return file.valid() &&
           WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                     nullptr) != 0 &&
           written == bytes.size();
}

bool writeWhole(const std::filesystem::path& file, std::string_view bytes, Durability durability) {
    const FileHandle handle(file, GENERIC_WRITE, CREATE_ALWAYS);
    return write(handle, bytes) &&
           (durability == Durability::replaced || FlushFileBuffers(handle.get()) != 0);
}

} // namespace

bool appendToFile(const std::filesystem::path& file, std::string_view bytes) {
    return write(FileHandle(file, FILE_APPEND_DATA, OPEN_ALWAYS), bytes);
}

bool replaceFile(const std::filesystem::path& file, std::string_view bytes, Durability durability) {
    std::filesystem::path temporary = file;
    temporary += L".new";
    const DWORD flags =
        MOVEFILE_REPLACE_EXISTING | (durability == Durability::synced ? MOVEFILE_WRITE_THROUGH : 0);
    if (!writeWhole(temporary, bytes, durability) ||
        MoveFileExW(temporary.c_str(), file.c_str(), flags) == 0) {
        DeleteFileW(temporary.c_str());
        return false;
    }
    return true;
}

} // namespace sandbox
