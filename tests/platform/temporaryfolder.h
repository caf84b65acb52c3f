#pragma once

#include "platform/files.h"
#include "sandbox/materials/content.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>

/// A folder on the real disk that goes with the object, spelled for the client's functions.
class TemporaryFolder {
public:
    TemporaryFolder() {
        static std::atomic<unsigned> count = 0;
        const std::string name =
            "platform-" + std::to_string(std::random_device()()) + '-' + std::to_string(count++);
        folder = std::filesystem::temp_directory_path() / name;
        std::filesystem::create_directories(folder);
    }
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

    std::string write(const std::string& name, const materials::Bytes& bytes) const {
        // Some file systems flush a file that is truncated and written again.
        std::filesystem::remove(onDisk(name));
        std::ofstream(onDisk(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path(name);
    }
    std::string write(const std::string& name, const std::string& text) const {
        return write(name, materials::Bytes(text.begin(), text.end()));
    }

    /// The content of a file; nothing when it is not there.
    std::optional<std::string> read(const std::string& name) const {
        std::ifstream file(onDisk(name), std::ios::binary);
        if (!file) {
            return std::nullopt;
        }
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    /// Entries of the folder itself.
    std::size_t entryCount() const {
        const auto entries = std::filesystem::directory_iterator(folder);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

private:
    std::filesystem::path folder;
};
