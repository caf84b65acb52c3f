#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// Cabinets (MS-CAB: stored, MSZIP, Quantum, LZX), read as SetupIterateCabinetA does.
namespace platform {

enum class CabinetNotification : std::uint32_t {
    fileInCabinet = 0x11,
    needNewCabinet = 0x12,
    fileExtracted = 0x13,
};

/// Answers to fileInCabinet.
inline constexpr std::uint32_t cabinetAbort = 0;
inline constexpr std::uint32_t cabinetDoIt = 1;
inline constexpr std::uint32_t cabinetSkip = 2;

struct CabinetMember {
    std::string nameInCabinet;
    std::uint64_t size = 0;
    std::string fullTargetName; ///< set by the callback that answers cabinetDoIt
};

/// Called on the caller's thread. For fileInCabinet the result is one of the answers
/// above. For the two others `member` names the file or the wanted cabinet, and any
/// result but 0 ends the iteration as failed.
using CabinetCallback = std::function<std::uint32_t(CabinetNotification, CabinetMember& member)>;

/// Walks the members in the cabinet's order and writes those that the callback wants.
/// False when the file is no cabinet, is damaged, spans into another cabinet, a member
/// cannot be written, or the callback ended it. A half-written member is removed;
/// members written before it stay.
bool iterateCabinet(const std::string& path, const CabinetCallback& callback);

/// What a cabinet asks for when all its members are brought out in its order.
struct CabinetExtent {
    std::size_t members = 0;
    /// With what has to be unpacked on the way to a member, each time that it has to be. A few
    /// kilobytes can ask for terabytes: members may share their data.
    std::uint64_t unpackedBytes = 0;
};

/// What no cabinet of the client comes near.
inline constexpr CabinetExtent maxCabinetExtent{4096, std::uint64_t{1} << 30};

/// As the index tells it, of which the readers believe nothing beyond it: neither writes more
/// than a member's size there. Nothing when the file cannot be read or its index is damaged.
std::optional<CabinetExtent> cabinetExtent(const std::string& path);

} // namespace platform
