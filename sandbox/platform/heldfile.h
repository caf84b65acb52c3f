#pragma once

#include <cstdint>
#include <filesystem>

namespace sandbox {

/// Keeps a file in use, as a running program keeps its image: until the object goes, no
/// other process can move, replace or delete it through the platform layer.
class HeldFile {
public:
    /// Nothing is held when the file is not there or somebody else holds it.
    explicit HeldFile(const std::filesystem::path& file);
    ~HeldFile();
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    bool isHeld() const { return handle != -1; }

private:
    std::intptr_t handle = -1; ///< the descriptor on posix, the handle on Windows
};

} // namespace sandbox
