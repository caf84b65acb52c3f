#include <sstream>

#include "sandbox/common/cabinetfile.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/doctor/reading.h"
#include "sandbox/materials/setuppackage.h"
#include "sandbox/platform/filewrites.h"

// What a run of the sandbox tells beside the client: what came by a restart, out of a cabinet or
// out of the package.

namespace sandbox::doctor {

namespace fs = std::filesystem;

void readStorage(Snapshot& snapshot) {
    std::error_code error;
    if (snapshot.places.storage.empty()) {
        return;
    }
    snapshot.cabinetMembers.emplace();
    for (fs::directory_iterator at(snapshot.places.storage, error), end; !error && at != end;
         at.increment(error)) {
        if (!at->is_regular_file(error) || !isCabinetFile(at->path())) {
            continue;
        }
        for (const std::string& name : membersOf(at->path())) {
            snapshot.cabinetMembers->insert(updateFolder + comparablePath(name));
        }
    }
}

void readPackage(Snapshot& snapshot) {
    const auto bytes = snapshot.places.storage.empty()
                           ? std::nullopt
                           : readFile(snapshot.places.client / "update" / "setup.exe");
    try {
        const auto payload =
            bytes ? materials::readPackage({bytes->begin(), bytes->end()}) : std::nullopt;
        for (std::size_t i = 0; payload && i < payload->files.size(); ++i) {
            const materials::PackedFile& file = payload->files[i];
            snapshot.packageFiles[comparablePath(file.path)] = materials::md5Hex(file.content);
        }
    } catch (const std::exception&) {
        snapshot.packageFiles.clear(); // another program, or a package that was cut short
    }
}

void readLog(Snapshot& snapshot) {
    static const std::string scheduled = "set peeding : ";
    std::istringstream log(readFile(snapshot.places.log).value_or(""));
    for (std::string line; std::getline(log, line);) {
        const std::size_t at = line.find(scheduled);
        if (at != std::string::npos) {
            line.erase(line.find_last_not_of(" \r") + 1);
            if (const auto path = pathBelow(snapshot.places, line.substr(at + scheduled.size()))) {
                snapshot.scheduledOnce.insert(comparablePath(*path));
            }
        }
    }
}

} // namespace sandbox::doctor
