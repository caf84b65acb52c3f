#pragma once

#include <string>

/// Versions as the client reads them: numbers between dots.
namespace sandbox {

/// Whether every part is a number and nothing else.
bool isDottedVersion(const std::string& version);

/// The number of parts; an empty text has one.
std::size_t partsOf(const std::string& version);

/// Whether a version resource can hold it: four parts, each of 16 bits.
bool isImageVersion(const std::string& version);

/// Below, at or above 0 as `a` is older than, the same as or newer than `b`. A part that is no
/// number is 0; of two with the same common parts the longer one is the newer.
int compareVersions(const std::string& a, const std::string& b);

/// Whether the client tells that version to the platform, and not "0.0.0.0" in its place:
/// four parts, none of them below its counterpart in 1.0.0.1001.
bool isToldToPlatform(const std::string& version);

/// The longest version that the client reads back from the version store.
inline constexpr std::size_t longestVersion = 63;

} // namespace sandbox
