#include "platform/posix/mspackfiles.h"

#include "platform/files.h"
#include "platform/posix/systempath.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sys/stat.h>

namespace platform::posix {

namespace {

constexpr std::size_t bufferSize = 65536; // the library reads and writes 4 to 32 KB at a time

struct OpenFile : mspack_file {
    std::FILE* file = nullptr;
    MspackFiles::Output* output = nullptr; ///< null for the cabinet
    std::string path;
    std::unique_ptr<char[]> buffer; ///< until the file is closed
};

OpenFile& of(mspack_file* file) {
    return *static_cast<OpenFile*>(file);
}

bool isSameFile(const std::string& a, const std::string& b) {
    struct stat first {};
    struct stat second {};
    return statusOf(a, first) && statusOf(b, second) && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

void closeFile(mspack_file* file) {
    OpenFile& closed = of(file);
    if (std::fclose(closed.file) != 0 && closed.output) {
        failFromErrno(closed.path);
        closed.output->complete = false;
    }
    delete &closed;
}

int readFile(mspack_file* file, void* buffer, int bytes) {
    std::FILE* source = of(file).file;
    const std::size_t count = std::fread(buffer, 1, static_cast<std::size_t>(bytes), source);
    return std::ferror(source) ? -1 : static_cast<int>(count);
}

int writeFile(mspack_file* file, void* buffer, int bytes) {
    const std::size_t size = static_cast<std::size_t>(bytes);
    if (std::fwrite(buffer, 1, size, of(file).file) == size) {
        return bytes;
    }
    failFromErrno(of(file).path);
    of(file).output->complete = false;
    return -1;
}

int seekFile(mspack_file* file, off_t offset, int mode) {
    const int origin = mode == MSPACK_SYS_SEEK_START ? SEEK_SET
                       : mode == MSPACK_SYS_SEEK_CUR ? SEEK_CUR
                                                     : SEEK_END;
    return ::fseeko(of(file).file, offset, origin);
}

off_t tellFile(mspack_file* file) {
    return ::ftello(of(file).file);
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the signature is the library's.
void ignoreMessage(mspack_file*, const char*, ...) {}

void* allocate(mspack_system*, std::size_t bytes) {
    return std::malloc(bytes);
}

void copyBytes(void* source, void* target, std::size_t bytes) {
    std::memcpy(target, source, bytes);
}

} // namespace

MspackFiles::MspackFiles(std::string cabinetPath)
    : mspack_system{openFor,       closeFile, readFile,  writeFile, seekFile, tellFile,
                    ignoreMessage, allocate,  std::free, copyBytes, nullptr},
      cabinet(std::move(cabinetPath)) {}

mspack_file* MspackFiles::openFor(mspack_system* self, const char* path, int mode) {
    auto& files = *static_cast<MspackFiles*>(self);
    const bool writes = mode != MSPACK_SYS_OPEN_READ;
    if (writes && isSameFile(path, files.cabinet)) {
        fail(errorSharingViolation);
        return nullptr;
    }
    std::FILE* file = openFile(path, writes ? "wb" : "rb");
    if (!file) {
        return nullptr;
    }
    std::unique_ptr<OpenFile> opened(
        new OpenFile{{},
                     file,
                     writes ? &files.lastOutput : nullptr,
                     path,
                     std::make_unique_for_overwrite<char[]>(bufferSize)});
    static_cast<void>(std::setvbuf(file, opened->buffer.get(), _IOFBF, bufferSize));
    if (writes) {
        files.lastOutput = {true, true};
    }
    return opened.release();
}

} // namespace platform::posix
