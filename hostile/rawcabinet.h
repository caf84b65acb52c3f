#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/materials/content.h"

/// Cabinets of which every field can be wrong. Plain values; any thread.
namespace hostile {

using materials::Bytes;

struct RawBlock {
    Bytes data;
    std::uint16_t unpacked = 0;
    std::uint32_t sum = 0; ///< 0: not told, and not tested by readers
};

struct RawFolder {
    std::uint16_t method = 0; ///< stored; 1 is MSZIP
    std::vector<RawBlock> blocks;
    std::optional<std::uint32_t> start{}; ///< of its blocks in the file; left out: the right one
    std::optional<std::uint16_t> blockCount{}; ///< left out: the right one
};

struct RawMember {
    std::string name; ///< with all its bytes, and a zero behind them
    std::uint32_t size = 0;
    std::uint32_t offset = 0;
    std::uint16_t folder = 0;
};

struct RawCabinet {
    std::vector<RawFolder> folders;
    std::vector<RawMember> members;
    std::string previous{}; ///< cabinets of the set; none when empty
    std::string next{};
    std::optional<std::uint32_t> size{}; ///< these four: left out, the right ones
    std::optional<std::uint32_t> firstMember{};
    std::optional<std::uint16_t> folderCount{};
    std::optional<std::uint16_t> memberCount{};
};

/// Source: "Microsoft Cabinet Format".
Bytes written(const RawCabinet& cabinet);

/// A stored folder that holds these bytes.
RawFolder storedFolder(const Bytes& content);

/// A folder that unpacks to that many blocks of 32,768 zeros, in some 50 bytes each.
RawFolder zeroFolder(std::size_t blocks);

} // namespace hostile
