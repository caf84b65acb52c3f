#include "platform/cabinet.h"

#include "platform/cabinetindex.h"
#include "platform/files.h"

#include <memory>

namespace platform {

std::optional<CabinetExtent> cabinetExtent(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openFile(path, "rb"), std::fclose);
    const auto index = file ? readCabinetIndex(file.get()) : std::nullopt;
    if (!index) {
        return std::nullopt;
    }
    CabinetExtent extent{index->size(), 0};
    CabinetEntry last;
    for (const CabinetEntry& member : *index) {
        // A folder can only be unpacked onward: for what lies behind, from its start again.
        const std::uint64_t reached = std::uint64_t{last.offset} + last.size;
        const std::uint64_t end = std::uint64_t{member.offset} + member.size;
        const bool goesOn = member.folder == last.folder && member.offset >= reached;
        extent.unpackedBytes += goesOn ? end - reached : end;
        last = member;
    }
    return extent;
}

} // namespace platform
