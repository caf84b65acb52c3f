#include "platform/files.h"

#include "platform/posix/systempath.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

using posix::callWithPath;
using posix::fail;
using posix::failFromErrno;
using posix::mapPath;
using posix::statusOf;

namespace {

bool makesFile(const char* mode) {
    return *mode != 'r';
}

} // namespace

bool fileExists(const std::string& path) {
    struct stat status {};
    return statusOf(path, status);
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return statusOf(path, status) && S_ISDIR(status.st_mode);
}

bool canAccess(const std::string& path) {
    return callWithPath(path, [](const char* way) { return ::access(way, F_OK) == 0 ? 0 : errno; });
}

bool makeFolder(const std::string& path) {
    const std::optional<std::string> mapped = mapPath(path);
    return mapped && (::mkdir(mapped->c_str(), 0777) == 0 || failFromErrno(*mapped));
}

std::FILE* openFile(const std::string& path, const char* mode) {
    std::FILE* file = nullptr;
    const auto open = [&](const char* way) {
        file = std::fopen(way, (std::string(mode) + 'e').c_str());
        return file ? 0 : errno;
    };
    if (!makesFile(mode)) {
        callWithPath(path, open);
    } else if (const std::optional<std::string> mapped = mapPath(path); mapped) {
        if (open(mapped->c_str()) != 0) {
            failFromErrno(*mapped);
        }
    }
    struct stat status {};
    if (file && ::fstat(::fileno(file), &status) == 0 && S_ISDIR(status.st_mode)) {
        (void)std::fclose(file);
        file = nullptr;
        fail(errorAccessDenied);
    }
    return file;
}

std::optional<std::uint64_t> fileSize(const std::string& path) {
    struct stat status {};
    if (!statusOf(path, status)) {
        return std::nullopt;
    }
    if (S_ISDIR(status.st_mode)) {
        fail(errorAccessDenied);
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

namespace {

bool isFolder(DIR* folder, const dirent& entry) {
    if (entry.d_type == DT_DIR) {
        return true;
    }
    struct stat status {};
    return (entry.d_type == DT_UNKNOWN || entry.d_type == DT_LNK) &&
           ::fstatat(::dirfd(folder), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

} // namespace

std::optional<std::vector<FolderEntry>> listFolder(const std::string& path) {
    const std::optional<std::string> mapped = mapPath(path);
    if (!mapped) {
        return std::nullopt;
    }
    std::unique_ptr<DIR, CloseFolder> folder(::opendir(mapped->c_str()));
    if (!folder) {
        failFromErrno(*mapped);
        return std::nullopt;
    }
    std::vector<FolderEntry> entries;
    while (const dirent* entry = ::readdir(folder.get())) {
        entries.push_back({entry->d_name, isFolder(folder.get(), *entry)});
    }
    return entries;
}

std::string systemPath(const std::string& path) {
    return mapPath(path).value_or(std::string());
}

} // namespace platform
