#include "doctor/healthyclient.h"

#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>

// One defect a row, planted in a healthy client; exactly that one is to be found.

namespace {

using materials::md5Hex;
using sandbox::doctor::Code;
using sandbox::doctor::Finding;
using Client = HealthyClient;

struct Case {
    const char* name;
    Code code;
    const char* file; ///< part of what the finding is about
    void (*plant)(Client& client);
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

constexpr const char* padding = "KEY_UPDATE_KELVAR_PADDING_FILE_LIST";
constexpr const char* listFile = "home/OrvSecurity/config/uninst/filelist.xml";
const std::string otherMd5(32, 'b');

/// A further file that waits for the restart, with all that belongs to it.
std::string addWaiting(Client& client, const std::string& target) {
    const std::string text = "new content of " + target;
    const std::string name = md5Hex({text.begin(), text.end()});
    client.put("update\\" + name, text);
    client.setJson(padding, {{"guard\\guard.dll", client.waiting}, {target, name}});
    client.replace("update\\" + name, target);
    return name;
}

void storeOffer(Client& client, int status, const std::string& version, const std::string& md5) {
    client.setJson(
        "KEY_UPDATE_UPGRADE",
        {{"status", status}, {"needUpgrade", true}, {"version", version}, {"packageMD5", md5}});
}

const Case cases[] = {
    {"Link", Code::strangeFile, "engine\\link",
     [](Client& c) {
         std::filesystem::create_symlink("/", c.file("engine\\link"));
     }},
    {"Pipe", Code::strangeFile, "pipe",
     [](Client& c) {
         mkfifo(c.file("pipe").c_str(), 0600);
     }},
    {"NoModule", Code::moduleMissing, "xnuser.dll",
     [](Client& c) {
         c.remove("xnuser.dll");
     }},
    {"NoList", Code::listMissing, "filelist.xml",
     [](Client& c) {
         c.overwritten[listFile] = std::nullopt;
     }},
    {"BrokenList", Code::listUnreadable, "filelist.xml",
     [](Client& c) {
         c.overwritten[listFile] = "<Root><FileList><File";
     }},
    {"NoMd5", Code::listDamaged, "core.dll",
     [](Client& c) {
         c.replaceInList("MD5", "MD6");
     }},
    {"NoSize", Code::listDamaged, "core.dll",
     [](Client& c) {
         c.replaceInList("Size=\"", "Size=\"x");
     }},
    {"NoName", Code::listDamaged, "entry 5",
     [](Client& c) {
         c.listEntry("", "1.0", otherMd5, false, 1);
     }},
    {"ListedOutside", Code::listOutside, "system.ini",
     [](Client& c) {
         c.listEntry("..\\system.ini", "1.0", otherMd5, false, 1);
     }},
    {"ListedTwice", Code::listDouble, "ENGINE",
     [](Client& c) {
         c.listEntry("ENGINE\\CORE.DLL", "1.0", otherMd5, false, 1);
     }},
    {"FileGone", Code::listFileMissing, "core.dll",
     [](Client& c) {
         c.remove("engine\\core.dll");
     }},
    {"FileChanged", Code::listContent, "rules.dat",
     [](Client& c) {
         c.put("data\\rules.dat", "rules of an intruder");
     }},
    {"SizeWrong", Code::listSize, "core.dll",
     [](Client& c) {
         c.replaceInList("Size=\"", "Size=\"9");
     }},
    {"ListedVersionWrong", Code::listVersion, "core.dll",
     [](Client& c) {
         c.replaceInList("1.3.0.1600", "1.3.0.1601");
     }},
    {"VersionLost", Code::listVersion, "rules.dat",
     [](Client& c) {
         c.versions.erase("data\\rules.dat");
     }},
    {"KindWrong", Code::listKind, "core.dll",
     [](Client& c) {
         c.replaceInList("\"true\"", "\"false\"");
     }},
    {"VersionsBroken", Code::versionsUnreadable, "versions.json",
     [](Client& c) {
         c.overwritten["sandbox/versions.json"] = "[1]";
     }},
    {"VersionNoNumber", Code::versionForm, "notes.txt",
     [](Client& c) {
         c.versions["update\\notes.txt"] = "1.3.beta";
     }},
    {"VersionTooLong", Code::versionForm, "notes.txt",
     [](Client& c) {
         c.versions["update\\notes.txt"] = std::string(64, '1');
     }},
    {"VersionUnderSlashes", Code::versionKey, "data/rules.dat",
     [](Client& c) {
         c.versions = {{"data/rules.dat", "1.3.0.1600"}};
     }},
    {"VersionTwice", Code::versionKey, "rules.dat",
     [](Client& c) {
         c.versions["DATA\\rules.dat"] = "1.3.0.1600";
     }},
    {"VersionOfNothing", Code::versionFileMissing, "gone.dat",
     [](Client& c) {
         c.versions["gone.dat"] = "1.0.0.0";
     }},
    {"VersionOfImage", Code::versionShadowed, "core.dll",
     [](Client& c) {
         c.versions["engine\\core.dll"] = "1.0.0.0";
     }},
    {"ChannelVersion", Code::channelVersion, "version.dat",
     [](Client& c) {
         c.versions["update\\version.dat"] = "2.0.0.5";
     }},
    {"SettingsBroken", Code::settingsUnreadable, "settings.json",
     [](Client& c) {
         c.restart();
         c.list.clear(); // what waited there is not known any more
         c.overwritten["sandbox/settings.json"] = "{\"a\":";
     }},
    {"ListSettingBroken", Code::settingNoJson, "TEMP_FILE_LIST",
     [](Client& c) {
         c.settings["KEY_UPDATE_KELVAR_TEMP_FILE_LIST"] = "[\"a\"";
     }},
    {"FilesSettingForm", Code::settingKind, "KEY_PLUGIN_UPDATE_FILE_LIST",
     [](Client& c) {
         c.setJson("KEY_PLUGIN_UPDATE_FILE_LIST", {{"list", {{"fileType", 1}}}});
     }},
    {"TimeIsText", Code::settingKind, "LAST_CHECK_TIME",
     [](Client& c) {
         c.settings["KEY_UPDATE_PKG_LAST_CHECK_TIME"] = "soon";
     }},
    {"PaddingClimbs", Code::paddingOutside, "..\\a.dll",
     [](Client& c) {
         c.setJson(padding, {{"guard\\guard.dll", c.waiting}, {"..\\a.dll", c.waiting + "x"}});
     }},
    {"PaddingTwice", Code::paddingDouble, "other.dll",
     [](Client& c) {
         c.setJson(padding, {{"guard\\guard.dll", c.waiting}, {"other.dll", "\\" + c.waiting}});
     }},
    {"WaitingGone", Code::waitingGone, "guard.dll",
     [](Client& c) {
         c.remove("update\\" + c.waiting);
     }},
    {"WaitingChanged", Code::waitingChanged, "update\\",
     [](Client& c) {
         const std::string name = addWaiting(c, "new.dat");
         c.put("update\\" + name, "something else");
     }},
    {"WaitingForNothing", Code::waitingNotScheduled, "update\\",
     [](Client& c) {
         addWaiting(c, "new.dat");
         c.delayed.pop_back();
     }},
    {"JournalDamaged", Code::delayedDamaged, "delayed moves",
     [](Client& c) {
         c.delayed.emplace_back("rename\ta\tb");
     }},
    {"MovesOut", Code::delayedOutside, "notes.txt",
     [](Client& c) {
         c.replace("update\\notes.txt", "..\\outside.txt");
     }},
    {"MovesIn", Code::delayedOutside, "strange",
     [](Client& c) {
         c.replace("..\\strange.dll", "engine\\core.dll");
     }},
    {"MovesAnother", Code::delayedForeign, "rules.dat",
     [](Client& c) {
         c.replace("data\\rules.dat", "data\\rules.old");
     }},
    {"DeletesClientFile", Code::delayedDelete, "core.dll",
     [](Client& c) {
         c.removeAtRestart("engine\\core.dll");
     }},
    {"MovedTwice", Code::delayedDouble, "notes.txt",
     [](Client& c) {
         c.replace("update\\notes.txt", "GUARD\\guard.dll");
     }},
    {"SourceGone", Code::delayedSourceGone, "update\\gone",
     [](Client& c) {
         c.replace("update\\gone", "new.dat");
     }},
    {"MovedUnlisted", Code::delayedUnlisted, "notes.txt",
     [](Client& c) {
         c.replace("update\\notes.txt", "notes.txt");
     }},
    {"Orphan", Code::updateLeftover, "update\\",
     [](Client& c) {
         c.put("update\\" + md5Hex({'o'}), "o");
     }},
    {"Stray", Code::updateForeign, "stray.txt",
     [](Client& c) {
         c.put("update\\stray.txt", "by hand");
     }},
    {"Transfer", Code::transferLeftover, "_1001",
     [](Client& c) {
         c.put("update\\_1001", "half");
     }},
    {"OldFile", Code::tempLeftover, "_0",
     [](Client& c) {
         c.put("update\\temp\\" + c.old + "_0", "older");
     }},
    {"PackageChanged", Code::packageFile, "setup.exe",
     [](Client& c) {
         storeOffer(c, 3, "1.4.0.1", otherMd5);
     }},
    {"PackageNotInstalled", Code::packagePending, "UPGRADE",
     [](Client& c) {
         storeOffer(c, 4, "1.4.0.1", otherMd5);
     }},
    {"PackageBrokenOff", Code::packagePending, "UPGRADE",
     [](Client& c) {
         storeOffer(c, 2, "1.4.0.1", otherMd5);
     }},
};

class Planted : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(Planted, IsTheOnlyFinding) {
    HealthyClient client;
    GetParam().plant(client);
    const auto report = client.examine();
    for (const Finding& finding : report.findings) {
        EXPECT_EQ(finding.code, GetParam().code) << finding.what;
        EXPECT_NE(finding.file.find(GetParam().file), std::string::npos) << finding.file;
        EXPECT_NE(finding.what.find(finding.file), std::string::npos) << finding.what;
    }
    EXPECT_EQ(report.findings.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Doctor, Planted, testing::ValuesIn(cases),
                         [](const auto& row) { return row.param.name; });

TEST(Planted, CoverEveryKindAndEachIsDocumented) {
    // The rest needs a process, another user or a registry, and is tested beside them.
    std::set<Code> planted{Code::fileInUse, Code::unreadableFile, Code::delayedUnreadable};
    for (const Case& row : cases) {
        planted.insert(row.code);
    }
    EXPECT_EQ(planted.size(), sandbox::doctor::allKinds().size());
    std::ifstream stream(DOCS "/doctor.md");
    const std::string document(std::istreambuf_iterator<char>(stream), {});
    for (const auto& kind : sandbox::doctor::allKinds()) {
        const std::string row =
            std::string("| `") + kind.name + "` | " +
            (kind.severity == sandbox::doctor::Severity::fault ? "fault" : "notice") + " | " +
            kind.means + " | " + kind.remedy + " |";
        EXPECT_NE(document.find(row), std::string::npos) << row;
    }
}
