#pragma once

#include <mspack.h>

#include <string>

namespace platform::posix {

/// The file functions that libmspack works with: it reads the one cabinet and writes
/// members to client paths, with every write and close checked. Owned by the caller, who
/// keeps it until the decompressor is gone. One thread.
class MspackFiles : public mspack_system {
public:
    explicit MspackFiles(std::string cabinetPath);
    MspackFiles(const MspackFiles&) = delete;
    MspackFiles& operator=(const MspackFiles&) = delete;

    /// What became of the file that was opened for writing.
    struct Output {
        bool opened = false;
        bool complete = false;
    };

    Output& output() { return lastOutput; }
    const std::string& cabinetPath() const { return cabinet; }

private:
    static mspack_file* openFor(mspack_system* self, const char* path, int mode);

    std::string cabinet;
    Output lastOutput;
};

} // namespace platform::posix
