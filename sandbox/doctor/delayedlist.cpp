#include "sandbox/common/clientpath.h"
#include "sandbox/doctor/reading.h"
#include "sandbox/doctor/registry.h"
#include "sandbox/platform/delayed.h"
#include "sandbox/platform/filewrites.h"
#include "sandbox/platform/pendingrenames.h"

namespace sandbox::doctor {

namespace {

/// The journal of a native client; nothing when it cannot be read.
std::optional<PendingList> readJournal(const Places& places) {
    const std::filesystem::path journal = places.client / journalFile;
    std::error_code error;
    if (!readFile(journal) && std::filesystem::exists(journal, error)) {
        return std::nullopt;
    }
    return pendingList(places.client);
}

std::optional<PendingList> readSystem(Snapshot& snapshot, Report& report) {
    const Places& places = snapshot.places;
    if (places.wine.empty()) {
        return readJournal(places);
    }
    snapshot.mayLackDelayed = isWineRunning(places);
    if (snapshot.mayLackDelayed) {
        report.unseen.emplace_back("delayed moves of the last half minute: the client's Windows "
                                   "runs, and writes its registry every now and then");
    }
    const auto value = pendingRenamesIn(places.wine / "system.reg");
    if (!value) {
        return std::nullopt;
    }
    return readPendingRenames(*value, places.clientNames().front());
}

Delayed placed(const Places& places, const PendingMove& move) {
    const auto keyOf = [&](const std::string& path) {
        const auto below = pathBelow(places, path);
        return below ? std::optional(comparablePath(*below)) : std::nullopt;
    };
    return {move.from, move.to, keyOf(move.from), keyOf(move.to)};
}

} // namespace

void readDelayed(Snapshot& snapshot, Report& report) {
    std::error_code error;
    const Places& places = snapshot.places;
    if (places.runState.empty() && !std::filesystem::exists(places.client / journalFile, error)) {
        report.unseen.emplace_back("the delayed moves: a client's folder alone without a journal");
        return;
    }
    const auto list = readSystem(snapshot, report);
    if (!list) {
        const std::string file = places.wine.empty() ? journalFile : "wine/system.reg";
        report.add(Code::delayedUnreadable, file,
                   "the system's list of delayed moves, " + file + ", cannot be read");
        return;
    }
    for (const std::string& fault : list->faults) {
        report.add(Code::delayedDamaged, "delayed moves", fault);
    }
    snapshot.delayed.emplace();
    for (const PendingMove& move : list->moves) {
        snapshot.delayed->push_back(placed(snapshot.places, move));
    }
}

} // namespace sandbox::doctor
