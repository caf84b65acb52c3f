#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sandbox/materials/content.h"

/// A package: a program with what it installs behind its own bytes, where neither ELF nor PE
/// looks. Behind the program come the files' bytes, then filling, the payload as JSON, its
/// length in 16 hexadecimal digits, and a mark. Plain functions; any thread.
namespace materials {

/// A file that the package puts in place.
struct PackedFile {
    std::string path; ///< relative to the client's folder, as the client spells it
    Bytes content;
};

struct SetupPayload {
    std::string version; ///< that the client has afterwards
    bool fails = false;  ///< the setup changes nothing
    std::vector<PackedFile> files;
};

/// The package, filled up to `size` with bytes that follow from `seed`. Throws
/// std::runtime_error when it is longer without.
Bytes buildPackage(Bytes program, const SetupPayload& payload, std::size_t size,
                   std::uint64_t seed);

/// What a package brings; nothing when the bytes are none. Throws nlohmann::json::exception
/// or std::runtime_error for a damaged one.
std::optional<SetupPayload> readPackage(const Bytes& package);

} // namespace materials
