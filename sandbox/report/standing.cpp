#include "sandbox/report/standing.h"

#include <set>

#include "sandbox/common/clientpath.h"
#include "sandbox/report/naming.h"
#include "sandbox/report/plannedmaterials.h"

namespace sandbox::report {
namespace {

using File = Standing::Found::File;

/// The host, the modules and the plug-in lie there, which no scenario lists.
bool mayBeOwn(const std::string& comparable) {
    const std::size_t folder = comparable.find('\\');
    return folder == std::string::npos || comparable.compare(0, folder, "xnplugins") == 0;
}

} // namespace

Standing::Standing(const Knowledge& knowledge) : known(knowledge), store(knowledge.versions) {
    for (const auto& [path, file] : known.files) {
        entries[path] = {File::there, true, file.isPe, file.version};
    }
}

void Standing::reach(const KelvarRun& run) {
    for (; nextEvent < known.events.size(); ++nextEvent) {
        const auto& event = known.events[nextEvent];
        const auto time = known.onLogClock(event["at"].get<std::int64_t>());
        if (!time || !run.begin || *time >= *run.begin) {
            return;
        }
        if (textOf(event, "kind") == "version") {
            store[comparablePath(textOf(event, "path"))] = textOf(event, "value");
        }
    }
}

void Standing::pass(const KelvarRun& run) {
    isStoreTold = isStoreTold && (known.hasObservations() || run.success == false);
    std::set<std::string> moved;
    for (const Material& row : run.materials) {
        const Planned* planned = plannedOf(row, run, known);
        if (planned != nullptr) {
            passRow(row, *planned, run);
        }
        // Unknown is what it brought, or which of two came last.
        const bool isMoved = row.tried == Material::Try::moved;
        if (isMoved && (!moved.insert(comparablePath(row.target)).second || planned == nullptr)) {
            forget(row.target);
        }
    }
}

void Standing::passRow(const Material& row, const Planned& planned, const KelvarRun& run) {
    const std::string path = comparablePath(planned.path);
    const bool isPe = !planned.fileVersion.empty();
    if (row.decision == "placed") {
        entries[path] = {File::there, true, isPe, planned.fileVersion};
    } else if (row.decision == "waiting") {
        // Old or new, as the restart has come or not: a data file has its version in the store.
        const bool isDataStill = !isPe && entries.count(path) != 0 && !entries[path].isPe;
        entries[path] = {row.lockedBy.empty() ? File::untold : File::there, isDataStill, false, ""};
    } else if (!row.failedBy.empty()) {
        entries[path] = {File::absent, false, false, ""};
    } else if (row.tried == Material::Try::moved &&
               (row.decision == "untold" || run.hasLostFiles)) {
        forget(path);
    }
}

void Standing::forget(const std::string& path) {
    entries[comparablePath(path)] = {};
}

Standing::Found Standing::at(const std::string& path) const {
    const std::string comparable = comparablePath(path);
    const auto entry = entries.find(comparable);
    if (entry == entries.end()) {
        return {known.hasScenario && !mayBeOwn(comparable) ? File::absent : File::untold};
    }
    Found found{entry->second.file};
    if (!entry->second.isKindTold) {
        return found;
    }
    if (entry->second.isPe) {
        found.version = entry->second.version;
    } else if (isStoreTold) {
        const auto stored = store.find(comparable);
        found.version = stored == store.end() ? "" : stored->second;
    }
    return found;
}

} // namespace sandbox::report
