#include "sandbox/platform/filewrites.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sandbox {

namespace {

class Descriptor {
public:
    Descriptor(const std::filesystem::path& file, int flags)
        : number(::open(file.c_str(), flags | O_CLOEXEC, 0644)) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number; }
    bool valid() const { return number >= 0; }
    bool close() {
        const int closing = number;
        number = -1;
        return closing < 0 || ::close(closing) == 0;
    }

private:
    int number;
};

ssize_t writeOnce(int descriptor, std::string_view bytes) {
    ssize_t written = 0;
    do {
        written = ::write(descriptor, bytes.data(), bytes.size());
    } while (written < 0 && errno == EINTR);
    return written;
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = writeOnce(descriptor, bytes);
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool writeWhole(const std::filesystem::path& file, std::string_view bytes, Durability durability) {
    Descriptor descriptor(file, O_WRONLY | O_CREAT | O_TRUNC);
    return descriptor.valid() && writeAll(descriptor.get(), bytes) &&
           (durability == Durability::replaced || ::fsync(descriptor.get()) == 0) &&
           descriptor.close();
}

/// Makes a rename within the folder durable.
void syncFolder(const std::filesystem::path& folder) {
    const Descriptor descriptor(folder, O_RDONLY | O_DIRECTORY);
    if (descriptor.valid()) {
        ::fsync(descriptor.get());
    }
}

} // namespace

std::optional<std::string> readFile(const std::filesystem::path& file) {
    const Descriptor descriptor(file, O_RDONLY | O_NONBLOCK); // a pipe's writer is not waited for
    struct stat facts {};
    if (!descriptor.valid() || ::fstat(descriptor.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return std::nullopt;
    }
    std::string bytes;
    std::array<char, 65536> block; // NOLINT(cppcoreguidelines-pro-type-member-init)
    while (true) {
        const ssize_t got = ::read(descriptor.get(), block.data(), block.size());
        if (got > 0) {
            bytes.append(block.data(), static_cast<std::size_t>(got));
        } else if (got == 0) {
            return bytes;
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
}

bool appendToFile(const std::filesystem::path& file, std::string_view bytes) {
    const Descriptor descriptor(file, O_WRONLY | O_CREAT | O_APPEND);
    return descriptor.valid() &&
           writeOnce(descriptor.get(), bytes) == static_cast<ssize_t>(bytes.size());
}

bool replaceFile(const std::filesystem::path& file, std::string_view bytes, Durability durability) {
    std::filesystem::path temporary = file;
    temporary += ".new";
    if (!writeWhole(temporary, bytes, durability) ||
        std::rename(temporary.c_str(), file.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    if (durability == Durability::synced) {
        syncFolder(file.parent_path());
    }
    return true;
}

} // namespace sandbox
