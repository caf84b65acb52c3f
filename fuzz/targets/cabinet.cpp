#include "platform/cabinet.h"
#include "fuzz/fuzz.h"
#include "platform/files.h"
#include "tests/platform/temporaryfolder.h"

// Cabinets, member by member. Input: the cabinet.

namespace {

using platform::CabinetMember;
using platform::CabinetNotification;
using Names = std::vector<std::string>;

constexpr std::uint64_t maxWritten = 1 << 20; ///< longer members cost time and show no more

struct Walk {
    bool succ = false;
    Names names{};
    std::uint64_t bytes = 0;
};

Walk namesOf(const std::string& cabinet) {
    Walk walk;
    walk.succ = platform::iterateCabinet(cabinet, [&](CabinetNotification, CabinetMember& member) {
        walk.names.push_back(member.nameInCabinet);
        walk.bytes += member.size;
        return platform::cabinetSkip;
    });
    return walk;
}

/// Writes each member to the same place.
Walk expanded(const std::string& cabinet, const std::string& target) {
    Walk walk;
    const auto take = [&](CabinetNotification notification, CabinetMember& member) {
        if (notification == CabinetNotification::fileInCabinet) {
            walk.names.push_back(member.nameInCabinet);
            member.fullTargetName = target;
            return member.size <= maxWritten ? platform::cabinetDoIt : platform::cabinetSkip;
        }
        if (notification == CabinetNotification::fileExtracted) {
            fuzz::require(member.nameInCabinet == walk.names.back(), "a member comes whole");
            fuzz::require(platform::fileSize(target) == member.size, "a member has its size");
            platform::removeFile(target);
        }
        return 0U;
    };
    walk.succ = platform::iterateCabinet(cabinet, take);
    return walk;
}

} // namespace

FUZZ_TARGET(cabinet) {
    static const TemporaryFolder folder;
    const std::string path = folder.write("in.cab", input);
    const Walk listed = namesOf(path);
    if (const auto extent = platform::cabinetExtent(path); extent && listed.succ) {
        fuzz::require(extent->members == listed.names.size(), "the index has the same members");
        fuzz::require(extent->unpackedBytes >= listed.bytes, "the index has their sizes");
    }
    const Walk taken = expanded(path, folder.path("member"));
    fuzz::require(taken.names.size() <= listed.names.size() &&
                      std::equal(taken.names.begin(), taken.names.end(), listed.names.begin()),
                  "both walks see the same members");
    fuzz::require(!taken.succ || taken.names.size() == listed.names.size(),
                  "a walk that succeeds has seen all");
    fuzz::require(!platform::fileExists(folder.path("member")), "no half member stays");
    fuzz::require(folder.read("in.cab") == input, "the cabinet stays as it is");
}
