#include "sandbox/report/explanation.h"

#include <algorithm>
#include <stdexcept>

#include "sandbox/common/clientpath.h"
#include "sandbox/platform/filewrites.h"
#include "sandbox/report/decision.h"
#include "sandbox/report/materialtests.h"
#include "sandbox/report/naming.h"
#include "sandbox/report/programs.h"
#include "sandbox/report/sightings.h"
#include "sandbox/report/spans.h"
#include "sandbox/report/standing.h"
#include "sandbox/report/storyreader.h"

namespace sandbox::report {
namespace {

/// What the log has told of the versions that conditions are asked with, up to some line.
class ToldVersions {
public:
    ToldVersions(const Log& log, const Knowledge& knowledge) : lines(log.lines), known(knowledge) {}

    /// The log is read up to and without the line.
    void reach(std::size_t number) {
        for (; next < lines.size() && lines[next].number < number; ++next) {
            see(lines[next].text);
        }
    }

    bool wasInstalled() const { return isInstalled; }

    Grounds grounds() const {
        Grounds told{known.clientVersion, "scenario", known.osVersion, "config"};
        if (isInstalled || told.clientVersion.empty()) {
            told.clientVersion = client;
            told.clientFrom = "log";
        }
        if (told.osVersion.empty()) {
            told.osVersion = system;
            told.osFrom = "log";
        }
        return told;
    }

private:
    void see(const std::string& text) {
        if (text.rfind("update plugin, pkg, task install, finished", 0) == 0) {
            isInstalled = true;
            client.clear(); // another one from some moment on
        }
        take(text, ", curr ver: ", ' ', client);
        if (take(text, "\"osVersion\":\"", '"', system)) {
            // The other channels ask with four parts, of which conditions see three.
            system.erase(std::min(system.rfind('.'), system.size()));
        }
    }

    static bool take(const std::string& text, const std::string& mark, char end,
                     std::string& value) {
        const std::size_t at = text.find(mark);
        if (at == std::string::npos) {
            return false;
        }
        const std::size_t from = at + mark.size();
        value = text.substr(from, text.find(end, from) - from);
        return true;
    }

    const std::vector<LogLine>& lines;
    const Knowledge& known;
    std::size_t next = 0;
    bool isInstalled = false;
    std::string client, system;
};

void explainRuns(Explanation& told) {
    ToldVersions versions(told.log, told.known);
    Standing standing(told.known);
    for (KelvarRun& run : told.runs) {
        addFaults(run, told);
        nameMaterials(run, told.known);
        addMaterialFaults(run, told);
        decide(run);
        versions.reach(run.firstLine);
        standing.reach(run);
        if (versions.wasInstalled()) {
            for (const std::string& path : told.known.ofPackage) {
                standing.forget(path);
            }
        }
        layOutTests(run, told.known, versions.grounds(), standing);
        standing.pass(run);
        addSightings(run, told);
        addUnstarted(run, told.known);
    }
}

Explanation explained(Log log, Knowledge known) {
    StoryReader reader;
    for (const LogLine& line : log.lines) {
        reader.see(line);
    }
    Story story = reader.end();
    Explanation told{std::move(log), std::move(known), std::move(story.runs), story.shutGates, {}};
    told.starts = startsOf(told.log, told.known);
    layOutSpans(told);
    explainRuns(told);
    return told;
}

} // namespace

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
