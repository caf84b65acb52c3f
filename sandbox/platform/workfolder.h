#pragma once

#include <filesystem>

namespace sandbox {

/// A folder of its own among the system's temporary ones, which goes with the object and all that
/// is in it. Native only.
class WorkFolder {
public:
    /// The path is empty when there can be none.
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }

private:
    std::filesystem::path folder;
};

} // namespace sandbox
