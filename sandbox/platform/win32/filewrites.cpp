#include "sandbox/platform/filewrites.h"

#include <array>
#include <windows.h>

namespace sandbox {

namespace {

constexpr int mostTries = 2000; // some seconds

class FileHandle {
public:
    FileHandle(const std::filesystem::path& file, DWORD access, DWORD disposition,
               DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE)
        : handle(CreateFileW(file.c_str(), access, shared, nullptr, disposition,
                             FILE_ATTRIBUTE_NORMAL, nullptr)) {}
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

/// Keeps other appenders of the file out: a lock on a byte where no data comes to lie.
class AppendLock {
public:
    explicit AppendLock(const FileHandle& file) : handle(file.get()) {
        place.OffsetHigh = 0x40000000;
        held = file.valid() && LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place) != 0;
    }
    ~AppendLock() {
        if (held) {
            UnlockFileEx(handle, 0, 1, 0, &place);
        }
    }
    AppendLock(const AppendLock&) = delete;
    AppendLock& operator=(const AppendLock&) = delete;

    bool isHeld() const { return held; }

private:
    HANDLE handle;
    OVERLAPPED place{};
    bool held = false;
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

/// Tries again while a reader has the target open, as readers here soon let go.
bool moveOver(const std::filesystem::path& from, const std::filesystem::path& to, DWORD flags) {
    for (int tries = 0; MoveFileExW(from.c_str(), to.c_str(), flags) == 0; ++tries) {
        const DWORD error = GetLastError();
        if (tries == mostTries ||
            (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION)) {
            return false;
        }
        Sleep(1);
    }
    return true;
}

} // namespace

std::optional<std::string> readFile(const std::filesystem::path& file) {
    // A file that is moved into place stays open for its deletion a moment longer.
    const FileHandle handle(file, GENERIC_READ, OPEN_EXISTING,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    std::string bytes;
    std::array<char, 65536> block{};
    DWORD size = 0;
    do {
        if (!handle.valid() ||
            ReadFile(handle.get(), block.data(), block.size(), &size, nullptr) == 0) {
            return std::nullopt;
        }
        bytes.append(block.data(), size);
    } while (size > 0);
    return bytes;
}

bool appendToFile(const std::filesystem::path& file, std::string_view bytes) {
    const FileHandle handle(file, GENERIC_WRITE, OPEN_ALWAYS);
    // Wine looks for the end and writes there in two steps, so appending alone is not enough.
    const AppendLock lock(handle);
    return lock.isHeld() && SetFilePointerEx(handle.get(), {}, nullptr, FILE_END) != 0 &&
           write(handle, bytes);
}

bool replaceFile(const std::filesystem::path& file, std::string_view bytes, Durability durability) {
    std::filesystem::path temporary = file;
    temporary += L".new";
    const DWORD flags =
        MOVEFILE_REPLACE_EXISTING | (durability == Durability::synced ? MOVEFILE_WRITE_THROUGH : 0);
    if (!writeWhole(temporary, bytes, durability) || !moveOver(temporary, file, flags)) {
        DeleteFileW(temporary.c_str());
        return false;
    }
    return true;
}

} // namespace sandbox
