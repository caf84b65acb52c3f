#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/cli/scenario.h"
#include "sandbox/materials/content.h"

/// The bytes of the scenario's files, over the material writers.
namespace sandbox {

using materials::Bytes;

/// The bytes of a file of kind "pe" or "data"; the same for the same seed and name.
Bytes bytesOf(const FilePlan& file, std::uint64_t seed, const std::string& name);

/// A cabinet of these members by "stored", "mszip", "lzx" or "quantum". Throws
/// std::runtime_error for another method.
Bytes cabinetOf(const std::string& method,
                const std::vector<std::pair<std::string, Bytes>>& members);

/// 32 lower-case digits.
std::string md5Of(const Bytes& bytes);
/// The same of a file; empty when it cannot be read.
std::string md5OfFile(const std::filesystem::path& file);

/// Throws std::runtime_error when the file cannot be read.
Bytes readBytes(const std::filesystem::path& file);

/// Writes a file whose folder is there or can be made. Throws std::runtime_error.
void writeBytes(const std::filesystem::path& file, const Bytes& bytes);

} // namespace sandbox
