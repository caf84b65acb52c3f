#include "sandbox/common/cabinetfile.h"

#include <fstream>

#include "platform/cabinet.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/platform/workfolder.h"

namespace sandbox {

namespace fs = std::filesystem;

bool isCabinetFile(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string mark(4, '\0');
    stream.read(mark.data(), static_cast<std::streamsize>(mark.size()));
    return mark == "MSCF";
}

std::vector<std::string> membersOf(const fs::path& cabinet) {
    std::vector<std::string> names;
    platform::iterateCabinet(toClientPath(cabinet), [&](platform::CabinetNotification what,
                                                        platform::CabinetMember& member) {
        if (what == platform::CabinetNotification::fileInCabinet) {
            names.push_back(member.nameInCabinet);
        }
        return platform::cabinetSkip;
    });
    return names;
}

std::optional<FileFacts> memberFacts(const fs::path& cabinet, const std::string& name) {
    const WorkFolder folder;
    const fs::path file = folder.path() / "member";
    if (folder.path().empty()) {
        return std::nullopt;
    }
    bool found = false;
    const bool isWhole =
        platform::iterateCabinet(toClientPath(cabinet), [&](platform::CabinetNotification what,
                                                            platform::CabinetMember& member) {
            if (what != platform::CabinetNotification::fileInCabinet) {
                return std::uint32_t{0};
            }
            if (found || !sameName(member.nameInCabinet, name)) {
                return platform::cabinetSkip;
            }
            found = true;
            member.fullTargetName = toClientPath(file);
            return platform::cabinetDoIt;
        });
    return found && isWhole ? factsOf(file, name) : std::nullopt;
}

} // namespace sandbox
