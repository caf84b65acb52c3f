#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace sandbox {

/// One file of the material storage, read from its start to its end while it is served.
/// One thread at a time; closed with the object.
class StoredFile {
public:
    /// Nothing is open when the file is not there.
    explicit StoredFile(const std::string& path);

    bool isOpen() const { return file != nullptr; }
    std::uint64_t size() const { return bytes; }

    /// The bytes from `offset` on, at most `length`; empty at the end or on failure.
    std::string read(std::uint64_t offset, std::size_t length);

private:
    struct Closer {
        void operator()(std::FILE* open) const { static_cast<void>(std::fclose(open)); }
    };
    std::unique_ptr<std::FILE, Closer> file;
    std::uint64_t bytes = 0;
};

/// Whether a file id is one plain name, so that it cannot leave the storage folder.
bool isPlainName(const std::string& name);

} // namespace sandbox
