#pragma once

#include <cstdint>
#include <filesystem>

namespace sandbox {

/// Keeps a file in use, as a running program keeps its image: until the object goes, it
/// can be read, but not moved, replaced or deleted through the platform layer.
class HeldFile {
public:
    /// Nothing is held when the file is not there, and on posix when somebody else holds it.
    explicit HeldFile(const std::filesystem::path& file);
    ~HeldFile();
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    bool isHeld() const { return handle != -1; }

private:
    std::intptr_t handle = -1; ///< the descriptor on posix, the handle on Windows
};

} // namespace sandbox
