#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "crash/evidence.h"
#include "crash/healthytrial.h"
#include "host/settings.h"

namespace {

using namespace crash;

constexpr const char* aside = "update\\temp\\aside";
constexpr const char* waiting = settingkeys::kelvarPaddingFileList;

void log(Trial& trial, const std::string& line) {
    trial.sessions.front().log.push_back("update plugin, " + line);
}
/// The file is gone from the break on, its old bytes aside.
void breakBetweenMoves(Trial& trial, const char* path) {
    trial.broken.files[aside] = targetOf(trial.packet, path).before;
    trial.broken.files.erase(path);
    trial.end.files.erase(path);
}
/// A run takes a waiting file away, and the target stays as it was.
void takeAway(Trial& trial, const char* path) {
    log(trial, "update padding, dupl padding, delete: " +
                   hashOf(trial.packet, targetOf(trial.packet, path)));
    trial.end.files[path] = targetOf(trial.packet, path).before;
}
void scheduleTwice(Trial& trial, const char* path) {
    for (int i = 0; i < 2; ++i) {
        log(trial, std::string("move task, set peeding :x\\") + path);
    }
    takeAway(trial, path);
}
void forget(Trial& trial) {
    (*trial.broken.fileList)[plain] = (*trial.end.fileList)[plain] = "1.0.0.1001 old 1";
    trial.sessions.front().programs.clear();
}
void tear(Trial& trial) {
    trial.broken.files[placed] = trial.end.files[placed] = "g2";
    log(trial, "move task, rollback 1 error, code: 32"); // as each member says that was in use
}
void leaveAside(Trial& trial) {
    trial.broken.files[aside] = trial.end.files[aside] = "p1";
}
void loseVersion(Trial& trial) {
    trial.end.stored.versions.erase(fresh);
}

using Map = std::map<std::string, std::string>;

Map& files(Snapshot& at) {
    return at.files;
}
Map& entries(Snapshot& at) {
    return *at.fileList;
}
Map& texts(Snapshot& at) {
    return at.stored.texts;
}
Map& versions(Snapshot& at) {
    return at.stored.versions;
}

constexpr const char* gone = nullptr;
constexpr const char* unsafe =
    "bin\\plain.dll holds neither the old nor the new bytes at the break";

/// One thing that is not as it should be.
const struct {
    const char* told;
    Snapshot Trial::*at;
    Map& (*of)(Snapshot&);
    const char* key;
    const char* value;
} differences[] = {
    {unsafe, &Trial::broken, files, plain, "other"},
    {unsafe, &Trial::broken, files, plain, ""},
    {unsafe, &Trial::broken, files, plain, gone},
    {"bin\\new.dll holds neither the old nor the new bytes at the break", &Trial::broken, files,
     "bin\\new.dll", ""},
    {"bin\\plain.dll holds other bytes in the end", &Trial::end, files, plain, "other"},
    {"bin\\plain.dll is the old one in the end", &Trial::end, files, plain, "p1"},
    {"bin\\plain.dll is missing in the end", &Trial::end, files, plain, gone},
    {"bin\\plain.dll changed with one more run", &Trial::again, files, plain, "p1"},
    {"trayhost.exe is not as it was", &Trial::end, files, "trayhost.exe", gone},
    {"bin\\foreign.dll stays", &Trial::end, files, "bin\\foreign.dll", "x"},
    {"update\\temp\\aside stays", &Trial::end, files, aside, "p1"},
    {"update\\evil.exe stays", &Trial::end, files, "update\\evil.exe", "x"},
    {"evil has got an entry in filelist.xml", &Trial::end, entries, "evil", "1"},
    {"filelist.xml changed with one more run", &Trial::again, entries, plain, gone},
    {"a stored list is no JSON", &Trial::broken, texts, waiting, "{"},
    {"a stored list is no JSON in the end", &Trial::end, texts, waiting, "{"},
    {"evil is listed as waiting, and nobody has offered it", &Trial::end, texts, waiting,
     R"({"evil":"x"})"},
    {"evil is listed as pushed aside, and nobody has offered it", &Trial::end, texts,
     settingkeys::kelvarTempFileList, R"(["evil"])"},
    {"bin\\plain.dll has version \"9\" in the store", &Trial::end, versions, plain, "9"},
    {"evil has got a version in the store", &Trial::end, versions, "evil", "9"},
    {"update\\version.dat is \"zzz\" in the store", &Trial::end, versions, versionKey, "zzz"},
    {"update\\version.dat is \"2.0.0.2002\" in the store", &Trial::end, versions, versionKey,
     newVersion},
    {"update\\version.dat is \"1.0.0.1001\" in the store", &Trial::wanted, versions, versionKey,
     newVersion},
};

/// What takes more than that, and what a death excuses.
const struct {
    const char* told;
    void (*plant)(Trial&);
    std::optional<Loss> ofDeath = {}; ///< what it is where the session died; else a fault, too
} rows[] = {
    {"bin\\plain.dll holds neither the old nor the new bytes with run 2",
     [](Trial& trial) {
         trial.later = {{1, trial.end}, {2, trial.end}, {3, trial.end}};
         trial.broken.files[plain] = trial.later[0].stands.files[plain] = "bad";
         trial.later[1].stands.files[plain] = "other";
     }},
    {"the targets took 2 runs",
     [](Trial& trial) {
         trial.later = {{1, trial.end}, {2, trial.end}};
         trial.later[0].stands.files[plain] = "p1";
     }},
    {"the restart has not done a > b",
     [](Trial& trial) {
         trial.notMoved = {"a > b"};
     }},
    {"evil.exe was started, and must not be",
     [](Trial& trial) {
         trial.sessions.front().programs.emplace_back("evil.exe");
     }},
    {"bin\\plain.dll is missing in the end",
     [](Trial& trial) {
         breakBetweenMoves(trial, plain);
     }},
    {"group\\placed.dll is missing in the end",
     [](Trial& trial) { breakBetweenMoves(trial, placed); }, Loss::betweenMoves},
    {"group\\placed.dll is the new one in the end", tear, Loss::groupTorn},
    {"group wait is mixed in the end",
     [](Trial& trial) {
         scheduleTwice(trial, busy);
     }},
    {"update\\temp\\aside stays", leaveAside, Loss::keptAside},
    {"update\\temp\\aside stays",
     [](Trial& trial) {
         trial.end.files[aside] = "p1"; // a later run has put it there
     }},
    {"bin\\plain.dll is the old one in the end",
     [](Trial& trial) {
         takeAway(trial, plain);
     }},
    {"bin\\new.dll has version \"\" in the store", loseVersion}, // it had one at the break
    {"bin\\new.dll has version \"\" in the store",
     [](Trial& trial) {
         trial.broken.stored.versions.erase(fresh);
         loseVersion(trial);
     },
     Loss::unrecorded},
    {"bin\\plain.dll has \"1.0.0.1001 old 1\" in filelist.xml", forget, Loss::unrecorded},
    {"plain.exe was never started", forget, Loss::unrecorded},
    {"wait\\busy.dll has \"9 lie 9\" in filelist.xml",
     [](Trial& trial) {
         scheduleTwice(trial, busy);
         (*trial.end.fileList)[busy] = "9 lie 9";
     }},
    {"filelist.xml cannot be read",
     [](Trial& trial) {
         trial.broken.fileList.reset();
     }},
    {"filelist.xml cannot be read in the end",
     [](Trial& trial) {
         trial.end.fileList.reset();
     }},
    {"wait\\busy.dll is listed as waiting and nothing is to replace it",
     [](Trial& trial) {
         trial.end.stored.texts[waiting] = R"({"wait\\busy.dll":"\\waits"})";
         trial.end.files["update\\waits"] = "x";
     }},
    {"the system still keeps: a > b",
     [](Trial& trial) {
         trial.end.delayed = {"a > b"};
     }},
    {"the host ended in an unforeseen way",
     [](Trial& trial) {
         trial.broken.stored.texts[waiting] = "{"; // which ends one session, not two
         trial.sessions.resize(3, {.end = End::exception});
     }},
    {"the run never came to what was to be disturbed",
     [](Trial& trial) {
         trial.at = 2;
     }},
};

void overtake(Trial& trial) {
    trial.end.files[plain] = "p1.5";
}
void zero(Trial& trial) {
    trial.broken.files[plain] = trial.end.files[plain] = std::string(2, '\0');
}
void cutSetting(Trial& trial) {
    trial.broken.stored.texts[waiting] = "{";
}
void cutFileList(Trial& trial) {
    trial.broken.fileList.reset();
}
/// The list was written ahead of the disturbance.
void cutFileListLater(Trial& trial) {
    trial.sessions.front().steps = {{Operation::write, fileListName}, trial.step};
    trial.at = 2;
    cutFileList(trial);
}
void undo(Trial& trial) {
    breakBetweenMoves(trial, plain);
    trial.broken.files[aside] = "p2";
}

constexpr const char* tornPlaced = "group\\placed.dll is the new one in the end";
constexpr const char* otherPlain = "bin\\plain.dll holds other bytes in the end";
constexpr const char* noFileList = "filelist.xml cannot be read";

/// What else than a death excuses, beside what comes near it and does not.
const struct {
    const char* told;
    void (*plant)(Trial&);
    Disturbance disturbance;
    Step step;
    std::optional<Loss> loss = {};
} excuses[] = {
    {tornPlaced,
     tear,
     Disturbance::fails,
     {Operation::move, "\\group\\placed.dll > \\update\\a"},
     Loss::groupTorn},
    {tornPlaced,
     tear,
     Disturbance::fails,
     {Operation::move, "\\group\\placed.dll > \\update\\temp\\a"}},
    {tornPlaced, tear, Disturbance::fails, {Operation::move, "\\group\\bad.dll > \\update\\a"}},
    {otherPlain,
     overtake,
     Disturbance::fails,
     {Operation::remove, "\\update\\early"},
     Loss::overtaken},
    {otherPlain, overtake, Disturbance::fails, {Operation::remove, "\\update\\other"}},
    {otherPlain, overtake, Disturbance::storeIsGone, {}, Loss::overtaken},
    {otherPlain, overtake, Disturbance::otherHost, {}},
    {otherPlain, zero, Disturbance::losesAll, {}, Loss::notForced},
    {otherPlain, zero, Disturbance::losesOpen, {}},
    {"a stored list is no JSON",
     cutSetting,
     Disturbance::losesOpen,
     {Operation::storeSetting, waiting},
     Loss::settingCut},
    {"a stored list is no JSON", cutSetting, Disturbance::losesOpen, {}},
    {noFileList,
     cutFileList,
     Disturbance::fullDisk,
     {Operation::write, fileListName},
     Loss::fileListCut},
    {noFileList, cutFileListLater, Disturbance::fullDisk, {}},
    {noFileList, cutFileListLater, Disturbance::losesAll, {}, Loss::fileListCut},
    {"update\\temp\\aside stays", leaveAside, Disturbance::fullDisk, {}, Loss::keptAside},
    {"update\\temp\\aside stays", leaveAside, Disturbance::storeIsGone, {}},
    {"bin\\plain.dll is missing in the end", undo, Disturbance::otherHost, {}, Loss::twoHosts},
    {"bin\\plain.dll is missing in the end", undo, Disturbance::fullDisk, {}},
};

void expectTold(Trial trial, const std::string& told, std::optional<Loss> loss) {
    if (trial.again == trial.wanted) {
        trial.again = trial.end;
    }
    const std::vector<Finding> findings = judge(trial);
    EXPECT_TRUE(std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
        return finding.loss == loss && finding.what == told;
    })) << told;
    EXPECT_EQ(outcomeOf(findings), loss ? Outcome::loss : Outcome::fault) << told;
}

TEST(CrashJudge, TellsOfEachThingThatIsNotAsItShouldBe) {
    const Packet packet = packetOfAll();
    EXPECT_TRUE(judge(healthyTrial(packet)).empty());
    for (const auto& row : differences) {
        Trial trial = healthyTrial(packet);
        Map& map = row.of(trial.*row.at);
        if (row.value) {
            map[row.key] = row.value;
        } else {
            map.erase(row.key);
        }
        expectTold(trial, row.told, std::nullopt);
    }
}

/// What a session that died may leave, none that lived may, nor one whose clock was set back.
TEST(CrashJudge, ExcusesADeathAndNothingElse) {
    const Packet packet = packetOfAll();
    for (const auto& row : rows) {
        for (const Disturbance disturbance :
             {Disturbance::fails, Disturbance::clockSetBack, Disturbance::diesAfter}) {
            Trial trial = healthyTrial(packet);
            trial.disturbance = disturbance;
            const bool dies = disturbance == Disturbance::diesAfter;
            trial.sessions.front().end = dies ? End::asPlanned : End::itself;
            row.plant(trial);
            expectTold(trial, row.told, dies ? row.ofDeath : std::nullopt);
        }
    }
}

TEST(CrashJudge, ExcusesWhatHasItsEvidence) {
    const Packet packet = packetOfAll();
    for (const auto& row : excuses) {
        SCOPED_TRACE(disturbanceNames[static_cast<std::size_t>(row.disturbance)]);
        Trial trial = healthyTrial(packet);
        trial.disturbance = row.disturbance;
        trial.step = row.step;
        Session& first = trial.sessions.front();
        first.end = isDeath(row.disturbance) ? End::asPlanned : End::itself;
        first.steps = {row.step};
        first.storeLookups = 1;
        row.plant(trial);
        expectTold(trial, row.told, row.loss);
    }
}

TEST(CrashJudge, WantsTheDeathThatWasPlanned) {
    const Packet packet = packetOfAll();
    Trial trial = healthyTrial(packet);
    trial.disturbance = Disturbance::diesBefore;
    expectTold(trial, "the host did not end there", std::nullopt);
    trial.disturbance = Disturbance::fails;
    trial.sessions.front().end = End::asPlanned;
    expectTold(trial, "the host ended at a step", std::nullopt);
    trial.sessions.front().end = End::exception;
    expectTold(trial, "the host ended in an unforeseen way", std::nullopt);
}

} // namespace
