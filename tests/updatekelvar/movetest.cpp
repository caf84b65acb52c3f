#include <gtest/gtest.h>

#include <cstring>

#include "host/settings.h"
#include "platform/files.h"
#include "sandbox/platform/delayed.h"
#include "sandbox/platform/heldfile.h"
#include "support/material.h"
#include "updatekelvar/task/xtaskkelvarmove.h"

namespace {

using materials::Bytes;
using Texts = std::vector<std::string>;

class MoveTest : public testing::Test {
protected:
    /// Puts a row on the list, with its file in the update folder.
    XMaterialMetaData& offer(const XMaterialMetaData& row, const Bytes& stored) {
        host.has("update\\" + row.md5, stored);
        list.materials.push_back(row);
        return list.materials.back();
    }
    XMaterialMetaData& offerPlain(const std::string& path, const std::string& version,
                                  const Bytes& content, const std::string& group = "") {
        XMaterialMetaData& row = offer(material::plain(path, version, content), content);
        row.dependent = group;
        return row;
    }
    XMaterialMetaData& offerPe(const std::string& path, std::uint16_t major,
                               const std::string& group = "") {
        return offerPlain(path, std::to_string(major) + ".0.0.0", peOf(major), group);
    }
    void hasPe(const std::string& path, std::uint16_t major) { host.has(path, peOf(major)); }
    static Bytes peOf(std::uint16_t major) { return material::pe({major, 0, 0, 0}); }

    /// Runs the task on the list; the values that finish was called with.
    std::vector<bool> run() {
        std::vector<bool> values;
        XTaskKelvarMove().check(&list, [&](bool succ) { values.push_back(succ); });
        return values;
    }
    bool succeeds() { return run() == std::vector<bool>{true}; }
    bool fails() { return run() == std::vector<bool>{false}; }

    bool holds(const std::string& path, const Bytes& content) const {
        return host.bytesOf(path) == std::string(content.begin(), content.end());
    }
    bool holdsPe(const std::string& path, std::uint16_t major) const {
        return holds(path, peOf(major));
    }
    std::string padding() { return host.settings.text(settingkeys::kelvarPaddingFileList); }
    std::string started() const {
        std::string names;
        for (const auto& [file, parameters] : host.startedPrograms) {
            names += std::string(file.begin(), file.end()) + " " +
                     std::string(parameters.begin(), parameters.end()) + ";";
        }
        return names;
    }
    /// What the next start of the system is to do, as "file" to delete or "file > target".
    std::vector<std::string> pending() const {
        std::vector<std::string> moves;
        for (const sandbox::PendingMove& move : sandbox::pendingMoves(host.folder)) {
            moves.push_back(inClient(move.from) + (move.to.empty() ? "" : " > ") +
                            inClient(move.to));
        }
        return moves;
    }
    /// A path without the client's folder; two separators in a row are as good as one.
    std::string inClient(std::string path) const {
        for (auto at = path.find("\\\\"); at != path.npos; at = path.find("\\\\")) {
            path.erase(at, 1);
        }
        const std::string folder = host.clientPath("");
        return path.starts_with(folder) ? path.substr(folder.size()) : path;
    }

    FakeHost host;
    XBatchGetMaterialMetaData list;
};

TEST_F(MoveTest, PlacesNewNewerAndDataFiles) {
    hasPe("xnplugins\\xrefresher.dll", 1);
    host.has("data\\v.dat", "old");
    host.versions.entries["data\\v.dat"] = "1.0";
    offerPe("xnplugins\\xrefresher.dll", 2);
    offerPe("new\\deep\\er\\b.dll", 1);
    offerPlain("data\\v.dat", "1.1", material::bytes("new"));
    list.version = "1.2.0.1600";
    EXPECT_TRUE(succeeds());
    EXPECT_TRUE(holdsPe("xnplugins\\xrefresher.dll", 2));
    EXPECT_TRUE(holdsPe("new\\deep\\er\\b.dll", 1));
    EXPECT_EQ(host.bytesOf("data\\v.dat"), "new");
    EXPECT_EQ(host.versions.calls,
              (std::vector<std::string>{"update data\\v.dat", "create update\\version.dat"}));
    EXPECT_EQ(host.versions.entries["update\\version.dat"], "1.2.0.1600");
    // The old files lie in temp, named by the new ones' hash, to be deleted at the restart.
    EXPECT_TRUE(holdsPe("update\\temp\\" + list.materials[0].md5, 1));
    EXPECT_FALSE(host.logged("move temp reboot error"));
    EXPECT_EQ(pending(), (Texts{"update\\temp\\" + list.materials[0].md5,
                                "update\\temp\\" + list.materials[2].md5}));
    ASSERT_EQ(host.notifications.posts.size(), 1U);
    const std::string& record = host.notifications.posts[0].record;
    EXPECT_EQ(host.notifications.posts[0].type, 14);
    EXPECT_EQ(record, std::string(4, '\0') + "1.2.0.1600" + std::string(118, '\0'));
}

TEST_F(MoveTest, RefusesWhatIsNotStrictlyNewerOrNotWhole) {
    hasPe("equal.dll", 2);
    hasPe("older.dll", 3);
    host.has("data.dat", "old");
    host.versions.entries["data.dat"] = "1.0";
    offerPe("equal.dll", 2);
    offerPe("older.dll", 2);
    offerPlain("data.dat", "1.0", material::bytes("same version"));
    offerPlain("broken.dll", "1", material::bytes("x")).fileMd5 = std::string(32, '0');
    XMaterialMetaData& gone = offerPlain("gone.dll", "1", material::bytes("y"));
    std::filesystem::remove(host.diskPath("update\\" + gone.md5));
    EXPECT_TRUE(fails());
    EXPECT_TRUE(holdsPe("equal.dll", 2));
    EXPECT_TRUE(holdsPe("older.dll", 3));
    EXPECT_EQ(host.bytesOf("data.dat"), "old");
    EXPECT_EQ(host.count("needMove, ver err, srcfile ver: 2.0.0.0 , dstfile ver:"), 2U);
    EXPECT_TRUE(host.logged("srcfile ver: 1.0 , dstfile ver: 1.0 "));
    EXPECT_EQ(host.count("md5 diff, meta.fileMd5: " + host.clientPath("update\\")), 1U);
    EXPECT_EQ(host.count("src not exist:"), 1U);
    EXPECT_EQ(host.count("task move, not need move:"), 5U);
    // Nothing handled: only the list of tried names is written.
    EXPECT_TRUE(host.versions.calls.empty());
    EXPECT_TRUE(host.notifications.posts.empty());
    EXPECT_TRUE(host.settings.hasText(settingkeys::kelvarTempFileList));
    EXPECT_TRUE(host.exists("update\\" + list.materials[0].md5));
}

TEST_F(MoveTest, ALockedFreeTargetWaitsForTheRestart) {
    hasPe("bin\\a.dll", 1);
    XMaterialMetaData& row = offerPe("bin\\a.dll", 2);
    material::wants(row, R"((%process%="a.exe" %param%="-p"))");
    {
        const sandbox::HeldFile inUse(host.diskPath("bin\\a.dll"));
        ASSERT_TRUE(inUse.isHeld());
        EXPECT_TRUE(succeeds());
        EXPECT_TRUE(holdsPe("bin\\a.dll", 1));
    }
    EXPECT_TRUE(host.logged("move dst to temp error, code: 32 "));
    EXPECT_TRUE(host.logged("set peeding : " + host.clientPath("bin\\a.dll")));
    EXPECT_EQ(padding(), R"({"bin\\a.dll":")" + row.fileMd5 + "\"}");
    EXPECT_EQ(started(), "a.exe -p;");
    EXPECT_EQ(host.versions.calls, std::vector<std::string>{"create update\\version.dat"});
    EXPECT_EQ(pending(), Texts{"update\\" + row.md5 + " > bin\\a.dll"});
}

TEST_F(MoveTest, ALockedTargetCountsOnlyWhenTheSystemTakesTheRequest) {
    hasPe("a.dll", 1);
    offerPe("a.dll", 2);
    // In the place of the list that a posix system keeps; Windows takes the request.
    std::filesystem::create_directories(host.diskPath("delayed-moves.journal"));
    const sandbox::HeldFile inUse(host.diskPath("a.dll"));
    const bool counts = run() == std::vector<bool>{true};
    EXPECT_EQ(counts, !pending().empty());
    EXPECT_EQ(counts, !padding().empty());
    EXPECT_EQ(counts, host.versions.entries.contains("update\\version.dat"));
}

TEST_F(MoveTest, AnOldFileThatCannotBeScheduledForItsDeletionHoldsNothingUp) {
    hasPe("a.dll", 1);
    const std::string temp = "update\\temp\\" + offerPe("a.dll", 2).md5;
    std::filesystem::create_directories(host.diskPath("delayed-moves.journal"));
    EXPECT_TRUE(succeeds());
    EXPECT_TRUE(holdsPe("a.dll", 2));
    EXPECT_TRUE(holdsPe(temp, 1));
    EXPECT_EQ(host.logged("move temp reboot error"), pending().empty());
}

TEST_F(MoveTest, AGroupWithALockedMemberWaitsAsAWhole) {
    for (const char* path : {"a.dll", "b.dll", "c.dll"}) {
        hasPe(path, 1);
    }
    material::wants(offerPe("a.dll", 2, "g"), R"((%process%="a.exe" %param%=""))");
    offerPe("b.dll", 3, "g");
    // The member that is placed first and then taken back comes in a cabinet.
    const Bytes packed = materials::buildCabinet(materials::CabMethod::mszip, {{"c.dll", peOf(4)}});
    offer(material::packed("c.dll", "4.0.0.0", peOf(4), packed), packed).dependent = "g";
    const std::string md5s[] = {list.materials[0].md5, list.materials[1].md5,
                                list.materials[2].fileMd5};
    {
        const sandbox::HeldFile inUse(host.diskPath("b.dll"));
        EXPECT_TRUE(succeeds());
    }
    for (const char* path : {"a.dll", "b.dll", "c.dll"}) {
        EXPECT_TRUE(holdsPe(path, 1)) << path;
    }
    EXPECT_EQ(padding(), R"({"a.dll":")" + md5s[0] + R"(","b.dll":")" + md5s[1] +
                             R"(","c.dll":"\\)" + md5s[2] + "\"}");
    EXPECT_EQ(started(), "");
    EXPECT_FALSE(host.logged("rollback 2 error"));
    // Those that were in place for a moment are back, and the deletes of the old ones stay.
    EXPECT_EQ(pending(),
              (Texts{"update\\temp\\" + md5s[0], "update\\" + md5s[1] + " > b.dll",
                     "update\\temp\\" + list.materials[2].md5, "update\\" + md5s[0] + " > a.dll",
                     "update\\" + md5s[2] + " > c.dll"}));
}

TEST_F(MoveTest, AGroupInWhichAllAreLockedStartsItsPrograms) {
    hasPe("a.dll", 1);
    material::wants(offerPe("a.dll", 2, "g"), R"((%process%="a.exe" %param%=""))");
    const sandbox::HeldFile inUse(host.diskPath("a.dll"));
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(started(), "a.exe ;");
}

TEST_F(MoveTest, ARefusedMemberTakesItsGroupBack) {
    hasPe("a.dll", 1);
    hasPe("b.dll", 5);
    hasPe("d.dll", 1);
    offerPe("a.dll", 2, "g");
    offerPe("new.dll", 6, "g");
    offerPe("b.dll", 5, "g");
    offerPe("c.dll", 7, "g"); // never tried
    material::wants(offerPe("d.dll", 3, "h"), R"((%process%="d.exe" %param%=""))");
    list.version = "9";
    EXPECT_TRUE(succeeds());
    EXPECT_TRUE(holdsPe("a.dll", 1));
    EXPECT_TRUE(holdsPe("b.dll", 5));
    EXPECT_FALSE(host.exists("c.dll"));
    EXPECT_FALSE(host.exists("new.dll"));
    EXPECT_TRUE(holdsPe("d.dll", 3));
    EXPECT_EQ(host.count("rollback 2 error, code: 2 "), 1U) << "there was no old new.dll";
    // Taken back: the new files wait in the update folder for the next run.
    EXPECT_TRUE(host.exists("update\\" + list.materials[0].md5));
    EXPECT_TRUE(host.exists("update\\" + list.materials[1].md5));
    EXPECT_TRUE(host.versions.calls.empty()) << "not all rows were placed";
    EXPECT_EQ(started(), "d.exe ;");
    const std::string names = host.settings.text(settingkeys::kelvarTempFileList);
    EXPECT_NE(names.find(list.materials[2].md5), std::string::npos);
    EXPECT_EQ(names.find(list.materials[3].md5), std::string::npos);
    EXPECT_EQ(host.notifications.posts.size(), 1U);
}

TEST_F(MoveTest, ScheduledMembersOfAFailedGroupStayScheduled) {
    hasPe("a.dll", 1);
    hasPe("b.dll", 5);
    offerPe("a.dll", 2, "g");
    offerPe("b.dll", 5, "g");
    const sandbox::HeldFile inUse(host.diskPath("a.dll"));
    EXPECT_TRUE(fails()) << "the row counts, but no group went through";
    EXPECT_EQ(padding(), R"({"a.dll":")" + list.materials[0].md5 + "\"}");
    EXPECT_EQ(pending(), Texts{"update\\" + list.materials[0].md5 + " > a.dll"});
}

TEST_F(MoveTest, GroupsGoInTheOrderOfTheirKeysAfterFreeRows) {
    offerPe("g2.dll", 1, "b");
    offerPe("g1.dll", 2, "a");
    offerPe("free.dll", 3);
    offerPe("g1b.dll", 4, "a");
    EXPECT_TRUE(succeeds());
    EXPECT_TRUE(host.logged("move all file, all: 4 , depends: 2 , non depend: 1 "));
    std::vector<std::string> order;
    for (const FakeHost::LogLine& line : host.log()) {
        if (const auto at = line.text.find("id of "); at != std::string::npos) {
            order.push_back(line.text.substr(at + 6));
        }
    }
    EXPECT_EQ(order, (std::vector<std::string>{"free.dll ", "g1.dll ", "g1b.dll ", "g2.dll "}));
}

TEST_F(MoveTest, CabinetsAreExpandedAndTheMemberNamedLikeTheTargetIsPlaced) {
    std::filesystem::create_directories(host.diskPath("update\\sub"));
    const Bytes cabinet = materials::buildCabinet(materials::CabMethod::lzx,
                                                  {{"other.txt", material::bytes("beside")},
                                                   {"c.dll", peOf(4)},
                                                   {"sub\\deep.txt", material::bytes("deep")}});
    const XMaterialMetaData row =
        offer(material::packed("bin\\c.dll", "4", peOf(4), cabinet), cabinet);
    EXPECT_TRUE(succeeds());
    EXPECT_TRUE(holdsPe("bin\\c.dll", 4));
    EXPECT_FALSE(host.exists("update\\" + row.md5));
    EXPECT_EQ(host.bytesOf("update\\other.txt"), "beside");
    EXPECT_EQ(host.bytesOf("update\\sub\\deep.txt"), "deep");
}

TEST_F(MoveTest, ABadCabinetFailsItsRowAndStays) {
    const Bytes good = materials::buildCabinet(
        materials::CabMethod::mszip, {{"first.txt", material::bytes("1")}, {"c.dll", peOf(4)}});
    struct Row {
        const char* what;
        Bytes cabinet;
        bool writes; ///< members before the bad place come out
    };
    const auto with = [](const std::string& name) {
        return materials::buildCabinet(
            materials::CabMethod::stored,
            {{"first.txt", material::bytes("1")}, {name, material::bytes("evil")}});
    };
    const Row rows[] = {
        {"no cabinet", material::bytes("hello"), false},
        {"cut short", Bytes(good.begin(), good.end() - 20), true},
        {"climbs out", with("..\\evil.txt"), false},
        {"climbs out later", with("a\\..\\..\\evil.txt"), false},
        {"slashes", with("../evil.txt"), false},
        {"root", with("\\evil.txt"), false},
        {"drive", with("C:evil.txt"), false},
        {"share", with("\\\\srv\\share\\evil.txt"), false},
        {"folder that is not there", with("none\\evil.txt"), true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        list.materials.clear();
        const auto offered =
            offer(material::packed("c.dll", "4", peOf(4), row.cabinet), row.cabinet);
        EXPECT_TRUE(fails());
        EXPECT_TRUE(host.logged("task premove, error: " + offered.md5));
        EXPECT_TRUE(host.exists("update\\" + offered.md5));
        EXPECT_FALSE(host.exists("c.dll"));
        EXPECT_FALSE(host.exists("evil.txt"));
        EXPECT_TRUE(row.writes || !host.exists("update\\first.txt"));
        EXPECT_FALSE(std::filesystem::exists(host.folder.parent_path() / "evil.txt"));
        std::filesystem::remove(host.diskPath("update\\first.txt"));
    }
}

TEST_F(MoveTest, ACabinetMayNotOverwriteItself) {
    for (const char* member : {"self", ".\\SELF", "x\\..\\SELF", "./self", "self."}) {
        list.materials.clear();
        const Bytes cabinet =
            materials::buildCabinet(materials::CabMethod::stored, {{member, material::bytes("x")}});
        XMaterialMetaData row = material::packed("c.dll", "4", peOf(4), cabinet);
        row.md5 = "SELF";
        offer(row, cabinet);
        EXPECT_TRUE(fails());
        EXPECT_TRUE(host.logged(std::string("bad member: ") + member)) << member;
        EXPECT_TRUE(holds("update\\SELF", cabinet)) << member;
    }
}

TEST_F(MoveTest, AFolderInTheTargetsPlaceStays) {
    hasPe("bin\\inside.dll", 1);
    offerPe("bin", 2);
    EXPECT_TRUE(fails());
    EXPECT_TRUE(host.logged("target is a folder: bin "));
    EXPECT_TRUE(holdsPe("bin\\inside.dll", 1));

    const Bytes cabinet = materials::buildCabinet(materials::CabMethod::stored, {{"x", peOf(3)}});
    list.materials.clear();
    offer(material::packed("bin\\temp", "3", peOf(3), cabinet), cabinet);
    EXPECT_TRUE(fails());
    EXPECT_TRUE(host.exists("update\\temp")) << "it bears the target's name, and stays";
}

TEST_F(MoveTest, WithoutAnApplicationFolderNothingIsTouched) {
    offerPe("a.dll", 1);
    fake::setExecutable(""); // as a path that is too long is told
    EXPECT_TRUE(fails());
    EXPECT_TRUE(host.logged("task move, no application folder."));
    EXPECT_FALSE(host.settings.hasText(settingkeys::kelvarTempFileList));
}

TEST_F(MoveTest, RowsOfEarlierAndOfFailedGroupsComeAgainWithTheNextGoodOne) {
    offerPlain("a.dat", "1", material::bytes("a"), "g1");
    offerPlain("b.dat", "1", material::bytes("b"), "g2");
    offerPlain("bad.dat", "1", material::bytes("x"), "g2").fileMd5 = "00";
    offerPlain("c.dat", "1", material::bytes("c"), "g3");
    EXPECT_TRUE(succeeds());
    EXPECT_FALSE(host.exists("b.dat"));
    EXPECT_EQ(host.versions.calls, (std::vector<std::string>{"create a.dat", "update a.dat",
                                                             "create b.dat", "create c.dat"}));
    EXPECT_TRUE(host.logged("update fileList items, count: 4 "));
}

TEST_F(MoveTest, TheFileListTellsWhatStandsAtTheTargets) {
    constexpr const char* fileList = "home\\OrvSecurity\\config\\uninst\\filelist.xml";
    host.homeDirectory = host.clientPath("home");
    host.has(fileList, "<Root><FileList/></Root>");
    hasPe("busy.dll", 1);
    host.has("busy.dll", materials::buildPeFile({.version = {1, 0, 0, 0}, .size = 5000}));
    const std::string md5 = offerPe("busy.dll", 2).fileMd5;
    offerPlain("d/e.dat", "7", material::bytes("data"));
    const sandbox::HeldFile inUse(host.diskPath("busy.dll"));
    EXPECT_TRUE(succeeds());
    EXPECT_NE(host.bytesOf(fileList).find("Name=\"busy.dll\" Version=\"2.0.0.0\" MD5=\"" + md5 +
                                          "\" IsPE=\"true\" Size=\"5000\""),
              std::string::npos);
    EXPECT_NE(host.bytesOf(fileList).find("Name=\"d\\e.dat\" Version=\"7\""), std::string::npos);
    EXPECT_NE(host.bytesOf(fileList).find("IsPE=\"false\" Size=\"4\""), std::string::npos);
}

TEST_F(MoveTest, HostileNamesAreRefusedBeforeAFileIsOpened) {
    const Bytes content = material::bytes("evil");
    const std::string paths[] = {
        "nul", "a\\Com1.dll", "PRN", "aux.x", "CONIN$", "conout$.dll", std::string("a\0b", 3),
        "lpt\u00b3", "COM\u00b9.x", "\xff.dll", "", ".", "a\\..", "..\\evil", ".\\..\\evil",
        "a\\..\\..\\evil", "\\evil", "/evil", "C:evil", "C:\\evil", "\\\\srv\\s\\evil", "a:b",
        "... \\evil", "..", "bin\\..",
        // stays below by its bytes, and climbs out where 936 is the code page
        "c\\\u4e2d\\b\\\u4e2d\\b\\..\\..\\..\\..\\x"};
    for (const std::string& path : paths) {
        list.materials.clear();
        offerPlain(path, "1", content);
        EXPECT_TRUE(fails()) << path;
        EXPECT_TRUE(host.logged("task move, bad path: " + path + " ")) << path;
    }
    EXPECT_FALSE(std::filesystem::exists(host.folder.parent_path() / "evil"));
    host.has("x", content); // a whole file, where "..\\x" leads to
    for (const char* name :
         {"NUL", "con.x", "LPT\u00b2", "", ".", "..", "a\\b", "a/b", "c:d", "..\\x", ". ."}) {
        list.materials = {material::plain("a.txt", "1", content),
                          material::plain("b.txt", "1", content)};
        list.materials[0].md5 = name;
        list.materials[1].fileMd5 = name;
        EXPECT_TRUE(fails()) << name;
        EXPECT_TRUE(host.logged("bad name, md5: " + std::string(name) + " , file md5: "));
        EXPECT_TRUE(host.logged(" , file md5: " + std::string(name) + " "));
    }
    // What only looks strange stays possible.
    const std::pair<std::string, std::string> strange[] = {{"a\\.\\x\\..\\y.txt", "a\\y.txt"},
                                                           {"b\\..\\y.txt", "y.txt"},
                                                           {"\u4e2d\\.\\y.txt", "\u4e2d\\y.txt"},
                                                           {"com", "com"},
                                                           {"coma", "coma"},
                                                           {"Lpt.dll", "Lpt.dll"},
                                                           {"com10", "com10"},
                                                           {"lpt1x", "lpt1x"}};
    for (const auto& [path, place] : strange) {
        list.materials.clear();
        offerPlain(path, "1", content);
        EXPECT_TRUE(succeeds()) << path;
        EXPECT_EQ(host.bytesOf(place), "evil");
    }
}

TEST_F(MoveTest, ATakenTempNameGetsANumberHoweverLongItIs) {
    hasPe("a.dll", 1);
    XMaterialMetaData row = material::plain("a.dll", "2", peOf(2));
    row.md5 = std::string(130, 'a');
    const std::string temp = "update\\temp\\" + offer(row, peOf(2)).md5;
    host.has(temp, "taken");
    for (const char* number : {"_0", "_1"}) {
        EXPECT_TRUE(succeeds());
        EXPECT_EQ(host.bytesOf(temp), "taken");
        EXPECT_TRUE(holdsPe(temp + number, 1));
        hasPe("a.dll", 1);
        offer(row, peOf(2));
    }
}

TEST_F(MoveTest, ATargetThatCannotBeMadeLeavesTheOldFileInTemp) {
    host.has("dir", "a file where a folder should be");
    offerPe("dir\\a.dll", 2);
    EXPECT_TRUE(fails());
    EXPECT_TRUE(host.logged("move src to dst error, code: "));
    EXPECT_EQ(host.bytesOf("dir"), "a file where a folder should be");
    EXPECT_TRUE(host.exists("update\\" + list.materials[0].md5));
}

TEST_F(MoveTest, TheVirusLibraryKeepsItsVersionUntilOneOfItsRowsIsPlaced) {
    offerPe("a.dll", 1);
    list.virusLibVersion = "2026-11-21";
    EXPECT_TRUE(succeeds());
    offerPe("lib.dll", 2).material.module.id = "/orvviruslib";
    list.virusLibVersion.clear(); // as from a packet whose difference has no such module
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.versions.entries.count("update\\virtuslib.dat"), 0U);
}

TEST_F(MoveTest, AGroupCountsLikeFreeRows) {
    offerPe("lib.dll", 1, "g").material.module.id = "/orvviruslib";
    offerPe("more.dll", 2, "g");
    list.version = "3.0";
    list.virusLibVersion = "2026-11-21";
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.versions.entries["update\\virtuslib.dat"], "2026-11-21");
    EXPECT_EQ(host.versions.entries["update\\version.dat"], "3.0") << "all are placed";
}

TEST_F(MoveTest, RecordsVirusLibrarySpAndPrograms) {
    offerPe("lib.dll", 1).material.module.id = "/OrvVirusLib";
    material::wants(offerPe("sp.dll", 2), R"((%process%="ORVPROTECT.exe" %param%="p"))");
    material::wants(offerPe("z.dll", 3),
                    R"((%process%="Z.exe" %param%="1")&&(%process%="z.exe" %param%="1"))");
    list.virusLibVersion = "2026-11-21";
    list.hasSp = true;
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.versions.entries["update\\virtuslib.dat"], "2026-11-21");
    EXPECT_EQ(started(), "orvdefender.exe --cmdline=install_sp;z.exe 1;orvprotect.exe p;");
}

TEST_F(MoveTest, ATextThatFillsTheVersionRecordIsNeverWrittenPastIt) {
    offerPe("a.dll", 1);
    list.version = std::string(200, 'v');
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.notifications.posts[0].record, std::string(4, '\0') + std::string(128, 'v'));
}

TEST_F(MoveTest, AVirusLibraryVersionThatDoesNotFitEndsTheProcess) {
    offerPe("a.dll", 1).material.module.id = "/orvviruslib";
    list.virusLibVersion = std::string(128, 'v');
    EXPECT_THROW(run(), fake::ProcessEnded);
    EXPECT_TRUE(host.logged("task move, version too long, length: 128 "));
    EXPECT_EQ(host.versions.entries.count("update\\virtuslib.dat"), 0U);
    offerPe("b.dll", 1).material.module.id = "/orvviruslib";
    list.virusLibVersion.pop_back();
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.versions.entries["update\\virtuslib.dat"], list.virusLibVersion);
}

TEST_F(MoveTest, MovesNothingWhileAWindowIsOpenOrWithoutAList) {
    offerPe("a.dll", 1);
    host.openWindows = {L"XNREPAIR.INSTANCE"};
    EXPECT_TRUE(fails());
    EXPECT_TRUE(host.logged("update plugin, kelvar, task move, can't move . "));
    EXPECT_FALSE(host.exists("a.dll"));
    std::vector<bool> values;
    XTaskKelvarMove().check(nullptr, [&](bool succ) { values.push_back(succ); });
    XTaskKelvarMove().check(nullptr, nullptr);
    EXPECT_EQ(values, std::vector<bool>{false});
}

TEST_F(MoveTest, AnEmptyListFailsAndWritesNothing) {
    EXPECT_TRUE(fails());
    EXPECT_FALSE(host.settings.hasText(settingkeys::kelvarTempFileList));
    EXPECT_TRUE(host.versions.calls.empty());
}

TEST_F(MoveTest, RunsWithoutAnyStore) {
    host.without(L"XNSetting.dll");
    host.without(L"xnbase.dll", "getFileVer");
    host.without(L"xnbase.dll", "runProcess");
    host.without(L"xnplugins\\xrefresher.dll");
    host.has("data.dat", "old");
    offerPlain("data.dat", "1", material::bytes("new")).material.module.id = "/orvviruslib";
    list.virusLibVersion = "1";
    list.hasSp = true;
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.bytesOf("data.dat"), "new");
}

} // namespace
