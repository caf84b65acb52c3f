#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace sandbox {

/// What a file on the disk is.
struct FileFacts {
    std::string path; ///< as its reader names it
    std::uint64_t size = 0;
    std::string md5;     ///< 32 lower-case digits
    std::string version; ///< of its version resource; empty without one
};

/// Reads the whole file once; nothing when it cannot. Never waits for a pipe: anything but a
/// regular file is not opened.
std::optional<FileFacts> factsOf(const std::filesystem::path& file, const std::string& path);

/// Whether a text is 32 hexadecimal digits.
bool isMd5(const std::string& text);

/// The same digits in lower case.
std::string lowered(std::string text);

} // namespace sandbox
