#include <cstdint>
#include <optional>
#include <pugixml.hpp>

#include "crash/operations.h"
#include "crash/writtenfiles.h"
#include "platform/files.h"
#include "platform/lasterror.h"

// The operations of the platform layer that change the disk or may fail, and the save of the
// list of installed files, which its library writes by itself. The linker gives each call of
// one to its counted form here and leaves the layer's own under the name with "real" (see
// CMakeLists.txt).

#define XR_TEXT "RKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
#define XR_COUNTED(mangled) __asm__("__wrap_" mangled)
#define XR_REAL(mangled) __asm__("__real_" mangled)

namespace crash {

using Folder = std::optional<std::vector<platform::FolderEntry>>;
using Document = const pugi::xml_document*;

bool realMakeFolder(const std::string& path) XR_REAL("_ZN8platform10makeFolderE" XR_TEXT);
bool realRemoveFile(const std::string& path) XR_REAL("_ZN8platform10removeFileE" XR_TEXT);
std::FILE* realOpenFile(const std::string& path, const char* mode)
    XR_REAL("_ZN8platform8openFileE" XR_TEXT "PKc");
bool realMoveFile(const std::string& from, const char* to, std::uint32_t flags)
    XR_REAL("_ZN8platform8moveFileE" XR_TEXT "PKcj");
Folder realListFolder(const std::string& path) XR_REAL("_ZN8platform10listFolderE" XR_TEXT);

namespace {

/// False, with that number as the reason, or the disk's when that is full.
bool fail(const Counted& counted, platform::Error error) {
    platform::setLastError(counted.isFull() ? platform::errorDiskFull : error);
    return false;
}

} // namespace

bool makeFolder(const std::string& path) XR_COUNTED("_ZN8platform10makeFolderE" XR_TEXT);
bool makeFolder(const std::string& path) {
    const Counted counted(Operation::makeFolder, path);
    return counted.fails() ? fail(counted, platform::errorAccessDenied) : realMakeFolder(path);
}

bool removeFile(const std::string& path) XR_COUNTED("_ZN8platform10removeFileE" XR_TEXT);
bool removeFile(const std::string& path) {
    const Counted counted(Operation::remove, path);
    return counted.fails() ? fail(counted, platform::errorSharingViolation) : realRemoveFile(path);
}

bool moveFile(const std::string& from, const char* to, std::uint32_t flags)
    XR_COUNTED("_ZN8platform8moveFileE" XR_TEXT "PKcj");
bool moveFile(const std::string& from, const char* to, std::uint32_t flags) {
    const bool isDelayed = (flags & platform::moveDelayUntilReboot) != 0;
    const Counted counted(isDelayed ? Operation::moveAtRestart : Operation::move,
                          from + (to ? std::string(" > ") + to : ""));
    if (counted.fails()) {
        return fail(counted,
                    isDelayed ? platform::errorAccessDenied : platform::errorSharingViolation);
    }
    return realMoveFile(from, to, flags);
}

std::FILE* openFile(const std::string& path, const char* mode)
    XR_COUNTED("_ZN8platform8openFileE" XR_TEXT "PKc");
std::FILE* openFile(const std::string& path, const char* mode) {
    const bool writes = *mode == 'w';
    const Counted counted(writes ? Operation::openToWrite : Operation::openToRead, path);
    // On a full disk a file that is there opens, cut to nothing, and takes no byte.
    if (counted.fails() && !(counted.isFull() && platform::fileExists(path))) {
        fail(counted, platform::errorSharingViolation);
        return nullptr;
    }
    std::FILE* file = realOpenFile(path, mode);
    return file && writes ? countWrites(file, path) : file;
}

Folder listFolder(const std::string& path) XR_COUNTED("_ZN8platform10listFolderE" XR_TEXT);
Folder listFolder(const std::string& path) {
    const Counted counted(Operation::searchFolder, path);
    if (counted.fails()) {
        fail(counted, platform::errorAccessDenied);
        return std::nullopt;
    }
    return realListFolder(path);
}

bool saveDocument(Document document, const char* path, const char* indent, unsigned flags,
                  pugi::xml_encoding encoding)
    XR_COUNTED("_ZNK4pugi12xml_document9save_fileEPKcS2_jNS_12xml_encodingE");
/// Writes as the library does: into the file itself, through a buffer.
bool saveDocument(Document document, const char* path, const char* indent, unsigned flags,
                  pugi::xml_encoding encoding) {
    std::FILE* file = openFile(path, "wb");
    if (!file) {
        return false;
    }
    pugi::xml_writer_file writer(file);
    document->save(writer, indent, flags, encoding);
    const bool written = std::ferror(file) == 0;
    return std::fclose(file) == 0 && written;
}

} // namespace crash
