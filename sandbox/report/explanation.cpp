#include "sandbox/report/explanation.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "sandbox/common/clientpath.h"
#include "sandbox/platform/filewrites.h"
#include "sandbox/report/decision.h"
#include "sandbox/report/materialtests.h"
#include "sandbox/report/naming.h"
#include "sandbox/report/plannedmaterials.h"
#include "sandbox/report/programs.h"
#include "sandbox/report/sightings.h"
#include "sandbox/report/storyreader.h"

namespace sandbox::report {
namespace {

/// The value behind `mark` in the last line ahead of `before` that has it, up to `end`.
std::string lastValue(const Log& log, std::size_t before, const std::string& mark, char end) {
    std::string value;
    for (const LogLine& line : log.lines) {
        const std::size_t at = line.number < before ? line.text.find(mark) : std::string::npos;
        if (at != std::string::npos) {
            const std::size_t from = at + mark.size();
            value = line.text.substr(from, line.text.find(end, from) - from);
        }
    }
    return value;
}

bool wasInstalled(const Log& log, std::size_t before) {
    return std::any_of(log.lines.begin(), log.lines.end(), [&](const LogLine& line) {
        return line.number < before &&
               line.text.rfind("update plugin, pkg, task install, finished", 0) == 0;
    });
}

/// The versions that a run's conditions are asked with, as far as somebody tells them.
void setVersions(const Explanation& told, const KelvarRun& run, Grounds& grounds) {
    const bool isFirstVersion = !wasInstalled(told.log, run.firstLine);
    grounds.clientVersion = isFirstVersion ? told.known.clientVersion : "";
    grounds.clientFrom = "scenario";
    if (grounds.clientVersion.empty()) {
        grounds.clientVersion = lastValue(told.log, run.firstLine, ", curr ver: ", ' ');
        grounds.clientFrom = "log";
    }
    grounds.osVersion = told.known.osVersion;
    grounds.osFrom = "config";
    if (grounds.osVersion.empty()) {
        // The file channel asks with four parts, of which conditions see three.
        grounds.osVersion = lastValue(told.log, run.firstLine, "\"osVersion\":\"", '"');
        grounds.osVersion = grounds.osVersion.substr(0, grounds.osVersion.rfind('.'));
        grounds.osFrom = "log";
    }
}

/// What stands on disk behind a run. A file that waits has its old version until the restart,
/// which no log tells; the store already has that of a data file.
void placeVersions(const KelvarRun& run, const Knowledge& known, Grounds& grounds) {
    for (const Material& row : run.materials) {
        const Planned* planned = known.planned(row.name);
        if (planned == nullptr || (row.decision != "placed" && row.decision != "waiting")) {
            continue;
        }
        const std::string path = comparablePath(planned->path);
        if (planned->fileVersion.empty() || row.decision == "placed") {
            grounds.versions[path] =
                planned->fileVersion.empty() ? row.version : planned->fileVersion;
        } else {
            grounds.versions.erase(path);
        }
    }
}

void forgetPackageFiles(const Explanation& told, const KelvarRun& run, Grounds& grounds) {
    if (wasInstalled(told.log, run.firstLine)) {
        for (const std::string& path : told.known.ofPackage) {
            grounds.versions.erase(path);
        }
    }
}

Explanation explained(Log log, Knowledge known) {
    StoryReader reader;
    for (const LogLine& line : log.lines) {
        reader.see(line);
    }
    Story story = reader.end();
    Explanation told{std::move(log), std::move(known), std::move(story.runs), story.shutGates};
    Grounds grounds;
    grounds.versions = told.known.versions;
    for (KelvarRun& run : told.runs) {
        nameMaterials(run, told.known);
        addFaults(run, told);
        decide(run);
        setVersions(told, run, grounds);
        forgetPackageFiles(told, run, grounds);
        for (Material& row : run.materials) {
            layOutTests(row, told.known, grounds);
        }
        placeVersions(run, told.known, grounds);
        addSightings(run, told);
        addUnstarted(run, told.known);
    }
    return told;
}

} // namespace

std::size_t Explanation::firstLineOf(const KelvarRun& run) const {
    return run.number == 1 ? 0 : beginOfSitting(run, *this).value_or(run.firstLine);
}

std::size_t Explanation::endLineOf(const KelvarRun& run) const {
    return run.number == runs.size() ? std::numeric_limits<std::size_t>::max()
                                     : firstLineOf(runs[run.number]);
}

Explanation explainText(const std::string& log) {
    return explained(readLog(log), {});
}

Explanation explainFolder(const Folders& folders) {
    const auto text = readFile(folders.log());
    if (!text) {
        throw std::runtime_error(pathText(folders.root()) + " holds no log of a run");
    }
    Log log = readLog(*text);
    Knowledge known = readKnowledge(folders, log);
    return explained(std::move(log), std::move(known));
}

} // namespace sandbox::report
