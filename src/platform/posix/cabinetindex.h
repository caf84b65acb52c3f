#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

namespace platform::posix {

/// Values of a member's folder index (CFFILE.iFolder) that say where its data goes on.
inline constexpr std::uint16_t continuedFromPrevious = 0xFFFD;
inline constexpr std::uint16_t continuedToNext = 0xFFFE;
inline constexpr std::uint16_t continuedOnBothSides = 0xFFFF;

/// The folder index of every member, in the cabinet's order; fewer when the index is cut
/// short. Source: "Microsoft Cabinet Format", CFHEADER and CFFILE.
std::vector<std::uint16_t> readFolderIndices(std::FILE* cabinet);

} // namespace platform::posix
