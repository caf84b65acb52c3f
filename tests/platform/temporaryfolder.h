#pragma once

#include "platform/files.h"
#include "sandbox/materials/content.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>

/// A folder on the real disk that goes with the object, spelled for the client's functions.
class TemporaryFolder {
public:
    TemporaryFolder() { std::filesystem::create_directories(folder); }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path onDisk(const std::string& name) const { return folder / name; }

    /// The folder, or something in it ("\" separates), as a client path.
    std::string path(const std::string& name = {}) const {
        std::string whole = folder.string() + (name.empty() ? "" : "\\" + name);
        std::replace(whole.begin(), whole.end(), '/', '\\');
        return whole;
    }

    std::string write(const std::string& name, const std::string& text) const {
        // Some file systems flush a file that is truncated and written again.
        std::filesystem::remove(onDisk(name));
        std::ofstream(onDisk(name), std::ios::binary) << text;
        return path(name);
    }
    std::string write(const std::string& name, const materials::Bytes& bytes) const {
        return write(name, std::string(bytes.begin(), bytes.end()));
    }

    /// The content of a file; nothing when it is not there.
    std::optional<std::string> read(const std::string& name) const {
        std::ifstream file(onDisk(name), std::ios::binary);
        return file ? std::optional(std::string(std::istreambuf_iterator<char>(file), {}))
                    : std::nullopt;
    }

    /// Entries of the folder itself.
    std::size_t entryCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder), {}));
    }

private:
    const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                         ("platform-" + std::to_string(std::random_device()()));
};
