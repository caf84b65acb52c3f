#include <sstream>

#include "sandbox/report/section.h"
#include "tests/report/fieldlines.h"
#include "tests/report/runfolder.h"

// What a run finds is what the scenario tells, changed by the runs before. What nobody tells of it
// stays open.

namespace {

using namespace runfolder;

std::string hash(char letter) {
    return std::string(32, letter);
}

std::string fileOf(const std::string& name, char letter) {
    return name + "-" + std::string(12, letter);
}

/// The same lines with the log's prefix; they come in the minute, all at once.
std::string inMinute(int minute, const std::string& lines) {
    const std::string begin = "2026-11-21 12:0" + std::to_string(minute) + ":00.000 [2] [1] ";
    std::istringstream in(lines);
    std::string text;
    for (std::string line; std::getline(in, line);) {
        text += begin + line + "\n";
    }
    return text;
}

std::string fetched(const std::string& name, char letter) {
    return "update plugin, kelvar, task download, download name: " + hash(letter) +
           " , url: http://s/" + fileOf(name, letter) + " \n";
}

std::string moved(const std::string& name, char letter, const std::string& more = "") {
    return "update plugin, kelvar, task move, move: " + hash(letter) + "  to  " +
           fileOf(name, letter) + " \n" + more;
}

std::string dropped(char letter) {
    return "update plugin, kelvar, task fetch, filter file ver faild, name: " + hash(letter) +
           " \n";
}

/// What the test of that name has on its right side.
std::string rightOf(const Material& row, const std::string& what) {
    for (const Test& test : row.tests) {
        if (test.what == what) {
            return test.right;
        }
    }
    return "not tested";
}

const Material& named(const KelvarRun& run, const std::string& name) {
    for (const Material& row : run.materials) {
        if (row.name == name) {
            return row;
        }
    }
    throw std::runtime_error("no material " + name);
}

class SecondRunTest : public FolderTest {
protected:
    /// Materials of version 2.0 with their targets, at a client with those files.
    void putScenario(const std::string& client, const std::string& materials) const {
        put("scenario.json",
            R"({"client": {)" + client + R"(}, "platform": {"materials": [)" + materials + "]}}");
        put("sandbox/run.json", R"({"scenario":")" + (root / "scenario.json").string() + "\"}");
    }
};

std::string material(const std::string& name, const char* kind, const std::string& more = "") {
    return R"({"name":")" + name + R"(","version":"2.0","path":"g/)" + name +
           R"(.x","file":{"kind":")" + kind + R"(","version":"2.0"})" + more + "}";
}

/// A material with what each of two runs says of it behind its download, or in its place.
struct Story {
    const char* name;
    const char* kind; ///< of what it brings, and of what stands there
    char hash;
    bool isThere; ///< in the beginning, with version 1.0
    std::string first, second;
    const char* found[2]; ///< as the file filter of each run has it; empty: not told
};

std::string waits(const std::string& name) {
    return "update plugin, move task, move dst to temp error, code: 32 \n"
           "update plugin, move task, set peeding : C:\\x\\g\\" +
           name + ".x \n";
}

const Story stories[] = {
    {"kept",
     "pe",
     'a',
     true,
     moved("kept", 'a') + waits("kept") + MOVE_ERROR("peeding src to dst", "5"),
     "",
     {"1.0", "1.0"}},
    {"placed", "pe", 'b', true, moved("placed", 'b'), dropped('b'), {"1.0", "2.0"}},
    {"fresh", "pe", 'c', false, moved("fresh", 'c'), dropped('c'), {"no such file", "2.0"}},
    // Until the restart the old version stands, then the new one.
    {"waits", "pe", 'd', true, moved("waits", 'd') + waits("waits"), "", {"1.0", ""}},
    {"lost",
     "pe",
     'e',
     true,
     moved("lost", 'e') + MOVE_ERROR("move src to dst", "5"),
     "",
     {"1.0", "no such file"}},
    // A data file has its version in the store, if that took it.
    {"data", "data", 'f', true, moved("data", 'f'), dropped('f'), {"1.0", "2.0"}},
    {"unwritten", "data", '0', true, moved("unwritten", '0'), "", {"1.0", "1.0"}},
    {"stored", "data", '1', false, "", "", {"no such file", "no such file"}},
    // Dropped, though the scenario has an older one: somebody else put another one there.
    {"changed", "pe", '2', true, dropped('2'), dropped('2'), {"", ""}},
};

std::string linesOf(const Story& story, const std::string& said, bool ofMoves) {
    const bool isDropped = said.find(", filter ") != std::string::npos;
    if (ofMoves) {
        return isDropped ? "" : said;
    }
    return isDropped ? said : fetched(story.name, story.hash);
}

std::string runOf(bool isFirst) {
    std::string fetches;
    std::string moves;
    for (const Story& story : stories) {
        const std::string& said = isFirst ? story.first : story.second;
        fetches += linesOf(story, said, false);
        moves += linesOf(story, said, true);
    }
    return inMinute(isFirst ? 0 : 1, BEGIN + fetches + ALL("9", "0", "9") + moves + ENDS("1"));
}

TEST_F(SecondRunTest, FindsWhatTheFirstOneLeft) {
    std::string files;
    std::string materials;
    for (const Story& story : stories) {
        put("storage/" + fileOf(story.name, story.hash), "");
        materials += (materials.empty() ? "" : ",") + material(story.name, story.kind);
        if (story.isThere) {
            files += (files.empty() ? "" : ",") + (R"({"path":"g\\)" + std::string(story.name)) +
                     R"(.x","version":"1.0","kind":")" + story.kind + "\"}";
        }
    }
    putScenario(R"("versions": {"g\\stored.x": "9.9"}, "files": [)" + files + "]", materials);
    put("sandbox/plugin.log", runOf(true) + runOf(false));
    putEvents(R"({"kind":"version","path":"g\\data.x","value":"2.0",)" + at(10) + "}\n");
    const Explanation told = explained();
    ASSERT_EQ(told.runs.size(), 2U);
    for (const Story& story : stories) {
        for (std::size_t run = 0; run < 2; ++run) {
            EXPECT_EQ(rightOf(named(told.runs[run], story.name), "file on disk"), story.found[run])
                << story.name << " in run " << run + 1;
        }
    }
}

// With another answer than the platform's, the scenario does not tell what the client was told.
TEST_F(SecondRunTest, TakesNoTargetFromAScenarioThatAFaultOverruled) {
    putScenario(R"("files": [])", material("core", "pe", R"(,"parameters":{"dependent":"g"})"));
    put("sandbox/plugin.log",
        inMinute(0, BEGIN + std::string(ASKS(KEY("core"))) + fetched("core", 'a') +
                        ALL("1", "1", "0") + moved("core", 'a') + ENDS("1")));
    putEvents("");
    const struct {
        const char* fault;
        const char* target;
    } rows[] = {{"meta-count", ""}, {"chunked", "g\\core.x"}};
    for (const auto& row : rows) {
        put("sandbox/faults.jsonl", R"({"on":"BatchGetMaterialMeta","words":"w","fault":")" +
                                        std::string(row.fault) + "\"," + at(1) + "}\n");
        const Explanation told = explained();
        const Material& core = told.runs.at(0).materials.at(0);
        EXPECT_EQ(core.target, row.target) << row.fault;
        EXPECT_EQ(core.group.has_value(), *row.target != '\0') << row.fault;
        EXPECT_EQ(told.runs[0].questions.at(0).fault, "w");
    }
}

TEST_F(SecondRunTest, TellsWhyAProgramWasNotAskedFor) {
    const auto withProgram = [](const std::string& name) {
        return material(name, "pe",
                        R"x(,"parameters":{"dependent":"g","exec":"(%process%=\")x" + name +
                            R"x(.exe\" %param%=\"\")"})x");
    };
    putScenario(R"("files": [])", withProgram("a") + "," + withProgram("b"));
    const std::string both = fetched("a", 'a') + fetched("b", 'b') + ALL("2", "1", "0");
    const std::string refusedB = "update plugin, kelvar, task move, not need move: " + hash('b') +
                                 "  to  " + fileOf("b", 'b') + " \n";
    const struct {
        std::string moves;
        const char* why; ///< of the program that "a" asks for
    } rows[] = {
        {moved("a", 'a') + refusedB, "not asked for: a was refused, its group was taken back"},
        {moved("a", 'a') + waits("a") + refusedB, "not asked for: the group of a has failed"},
        {moved("a", 'a') + moved("b", 'b') + waits("b") + PADDING("g\\a.x"),
         "not asked for: the group of a waits for the restart"},
        {moved("a", 'a') + moved("b", 'b'), "no line tells that a asked for it"},
    };
    for (const auto& row : rows) {
        put("sandbox/plugin.log", inMinute(0, BEGIN + both + row.moves + ENDS("1")));
        const Explanation told = explained();
        ASSERT_FALSE(told.runs.at(0).programs.empty());
        EXPECT_EQ(told.runs[0].programs[0].outcome, row.why);
    }
}

// Each start that a line tells was seen, or none is told.
TEST_F(SecondRunTest, TellsWhichProgramsOfOtherChannelsStarted) {
    put("sandbox/plugin.log", inMinute(0, BEGIN "update plugin, other, task run, check. \n"
                                                "update plugin, pkg, task install, finished \n"));
    const std::string setup =
        R"({"kind":"process","file":"update\\setup.exe","parameters":"","started":false,)" + at(5) +
        "}\n";
    const struct {
        std::string events;
        const char* words;
    } rows[] = {
        {"", "setup.exe was to be started; whether it was, the log does not tell"},
        {setup, "setup.exe was not started: there is none, or it cannot run"},
        {setup + setup, "setup.exe was to be started; whether it was, the log does not tell"},
    };
    for (const auto& row : rows) {
        putEvents(row.events);
        const Explanation told = explained();
        const auto steps = channelSteps(told.log, told.starts, 0, 100);
        ASSERT_EQ(steps.size(), 2U);
        EXPECT_EQ(steps[0].words, row.words);
    }
}

} // namespace
