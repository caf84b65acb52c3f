#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <vector>

namespace platform {

/// Values of a member's folder (CFFILE.iFolder) that say where its data goes on.
inline constexpr std::uint16_t continuedFromPrevious = 0xFFFD;
inline constexpr std::uint16_t continuedToNext = 0xFFFE;
inline constexpr std::uint16_t continuedOnBothSides = 0xFFFF;

/// Where a member's data lies: a part of what a folder unpacks to.
struct CabinetEntry {
    std::uint32_t size = 0;
    std::uint32_t offset = 0;
    std::uint16_t folder = 0;
};

/// An entry for every member, in the cabinet's order. Nothing when the index is cut short, has a
/// text of more than 255 bytes, or begins anywhere but behind the folders: there some readers
/// look for it where the header says and some where the folders end, and they would see different
/// members. Source: "Microsoft Cabinet Format", CFHEADER, CFFOLDER and CFFILE.
std::optional<std::vector<CabinetEntry>> readCabinetIndex(std::FILE* cabinet);

} // namespace platform
