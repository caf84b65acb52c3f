#include "crash/writtenfiles.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "crash/operations.h"

namespace crash {

namespace {

struct WrittenFile {
    std::string what;
    int descriptor = -1;
    bool isOpen = true;
};

std::vector<std::unique_ptr<WrittenFile>>& writtenFiles() {
    static auto& all = *new std::vector<std::unique_ptr<WrittenFile>>;
    return all;
}

ssize_t writeBlock(void* cookie, const char* bytes, std::size_t size) {
    const auto* file = static_cast<WrittenFile*>(cookie);
    const Counted counted(Operation::write, file->what);
    if (counted.fails()) {
        errno = ENOSPC;
        return 0;
    }
    return std::max<ssize_t>(::write(file->descriptor, bytes, size), 0); // 0 is how a cookie fails
}

int closeFile(void* cookie) {
    auto* file = static_cast<WrittenFile*>(cookie);
    const Counted counted(Operation::closeWritten, file->what);
    file->isOpen = false; // the descriptor stays for zeroWrittenFiles
    if (counted.fails()) {
        errno = EIO;
        return EOF;
    }
    return 0;
}

} // namespace

std::FILE* countWrites(std::FILE* opened, const std::string& what) {
    auto file = std::make_unique<WrittenFile>();
    file->what = what;
    file->descriptor = ::dup(::fileno(opened));
    (void)std::fclose(opened);
    std::FILE* counted = ::fopencookie(file.get(), "wb", {nullptr, writeBlock, nullptr, closeFile});
    writtenFiles().push_back(std::move(file));
    return counted;
}

void cutOpenFiles() {
    for (const auto& file : writtenFiles()) {
        if (file->isOpen && ::ftruncate(file->descriptor, 0) != 0) {
            ::_exit(EXIT_FAILURE);
        }
    }
}

void zeroWrittenFiles() {
    for (const auto& file : writtenFiles()) {
        struct stat status {};
        if (::fstat(file->descriptor, &status) != 0 || ::ftruncate(file->descriptor, 0) != 0 ||
            ::ftruncate(file->descriptor, status.st_size) != 0) {
            ::_exit(EXIT_FAILURE);
        }
    }
}

} // namespace crash
