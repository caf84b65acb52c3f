#include "platform/files.h"

#include "platform/posix/systempath.h"

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

using posix::fail;
using posix::failFromErrno;
using posix::mapPath;

bool fileExists(const std::string& path) {
    const std::optional<std::string> mapped = mapPath(path);
    struct stat status {};
    return mapped && (::stat(mapped->c_str(), &status) == 0 || failFromErrno(*mapped));
}

bool isFolder(const std::string& path) {
    const std::optional<std::string> mapped = mapPath(path);
    struct stat status {};
    return mapped && ::stat(mapped->c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool canAccess(const std::string& path) {
    const std::optional<std::string> mapped = mapPath(path);
    return mapped && (::access(mapped->c_str(), F_OK) == 0 || failFromErrno(*mapped));
}

bool makeFolder(const std::string& path) {
    const std::optional<std::string> mapped = mapPath(path);
    return mapped && (::mkdir(mapped->c_str(), 0777) == 0 || failFromErrno(*mapped));
}

std::FILE* openFile(const std::string& path, const char* mode) {
    const std::optional<std::string> mapped = mapPath(path);
    if (!mapped) {
        return nullptr;
    }
    std::FILE* file = std::fopen(mapped->c_str(), (std::string(mode) + 'e').c_str());
    struct stat status {};
    if (!file) {
        failFromErrno(*mapped);
    } else if (::fstat(::fileno(file), &status) == 0 && S_ISDIR(status.st_mode)) {
        (void)std::fclose(file);
        file = nullptr;
        fail(errorAccessDenied);
    }
    return file;
}

std::optional<std::uint64_t> fileSize(const std::string& path) {
    const std::optional<std::string> mapped = mapPath(path);
    struct stat status {};
    if (!mapped) {
        return std::nullopt;
    }
    if (::stat(mapped->c_str(), &status) != 0) {
        failFromErrno(*mapped);
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
