#include "doctor/healthyclient.h"

#include <gtest/gtest.h>
#include <set>
#include <unistd.h>

#include "sandbox/doctor/registry.h"
#include "sandbox/materials/setuppackage.h"
#include "sandbox/platform/heldfile.h"
#include "sandbox/platform/hostprocess.h"

// What is no defect, what cannot be seen, and that nothing is written.

namespace {

namespace fs = std::filesystem;
using sandbox::doctor::Code;
using sandbox::doctor::Report;
using Client = HealthyClient;

constexpr const char* padding = "KEY_UPDATE_KELVAR_PADDING_FILE_LIST";

struct Case {
    const char* name;
    void (*change)(Client& client);
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

/// A later version of the file that waits, placed at once: its row took the waiting file away.
void placeLaterGuard(Client& client) {
    const auto later = Client::image("1.4.0.1");
    client.put("guard\\guard.dll", later);
    client.remove("update\\" + client.waiting);
    const std::size_t at = client.list.find("<File Name=\"guard");
    client.list.erase(at, client.list.find("<File Name=\"orv") - at);
    client.listEntry("guard\\guard.dll", "1.4.0.1", materials::md5Hex(later), true, later.size());
}

// What the client leaves behind by design.
const Case healthy[] = {
    {"BeforeTheRestart",
     [](Client&) {
     }},
    {"AfterTheRestart",
     [](Client& c) {
         c.restart();
     }},
    {"PlacedBeforeTheRestart", placeLaterGuard},
    {"PlacedAfterTheRestart",
     [](Client& c) {
         c.restart();
         placeLaterGuard(c);
     }},
    {"RestartToldByTheLogAlone",
     [](Client& c) {
         c.restart();
         c.settings.erase(padding);
         c.overwritten["sandbox/plugin.log"] =
             "f (src/a.cpp:1) update plugin, move task, set peeding : " +
             c.full("guard\\guard.dll") + " \n";
     }},
    {"LogIsPipe",
     [](Client& c) {
         c.putPipe("sandbox/plugin.log");
     }},
    {"SizeWithZeros",
     [](Client& c) {
         c.replaceInList("Size=\"", "Size=\"00");
     }},
    {"StatusOfNoState", // whose lower half is one
     [](Client& c) {
         c.setJson("KEY_UPDATE_UPGRADE",
                   {{"status", 4294967298}, {"needUpgrade", true}, {"version", "1.4.0.1"}});
     }},
    {"GroupFilePadding",
     [](Client& c) {
         c.setJson(padding, {{"guard\\guard.dll", "\\" + c.waiting}});
     }},
    {"TempSweptLater",
     [](Client& c) {
         c.delayed.pop_back();
     }},
    {"DeleteOfNothing",
     [](Client& c) {
         c.removeAtRestart("update\\temp\\taken_back");
     }},
    {"IgnoreListAsWritten",
     [](Client& c) {
         c.setJson("KEY_UPDATE_IGNORE_VERSION_LIST", {"1.4.0.1"});
     }},
    {"FileOfTheFileChannel",
     [](Client& c) {
         c.put("patchlib0.dat", "new");
         c.listEntry("patchlib0.dat", "", materials::md5Hex({'o', 'l', 'd'}), false, 3);
         c.setJson("KEY_PLUGIN_UPDATE_FILE_LIST",
                   {{"list",
                     {{{"fileType", 1000},
                       {"fileVersion", "1"},
                       {"fileURL", ""},
                       {"fileMD5", materials::md5Hex({'n', 'e', 'w'})}}}}});
     }},
    {"FileOfThePackage",
     [](Client& c) {
         const materials::SetupPayload payload{"1.4.0.1", false, {{"ui.dat", {'n', 'e', 'w'}}}};
         c.put("update\\setup.exe", materials::buildPackage({'x'}, payload, 4096, 1));
         c.put("ui.dat", "new");
         c.listEntry("ui.dat", "", materials::md5Hex({'o', 'l', 'd'}), false, 3);
     }},
    {"NoStores",
     [](Client& c) {
         c.restart();
         c.list.clear();
         c.overwritten["sandbox/filelist-start.xml"] = std::nullopt;
         c.overwritten["home/OrvSecurity/config/uninst/filelist.xml"] = std::nullopt;
         c.overwritten["sandbox/settings.json"] = std::nullopt;
         c.overwritten["sandbox/versions.json"] = std::nullopt;
     }},
};

class Healthy : public testing::TestWithParam<Case> {};

/// Every file of the run with its times and content.
std::map<std::string, std::string> everything(const fs::path& root) {
    std::map<std::string, std::string> all;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        std::string facts = std::to_string(entry.last_write_time().time_since_epoch().count());
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            facts.append(std::istreambuf_iterator<char>(file), {});
        }
        all[entry.path().string()] = facts;
    }
    return all;
}

/// While it lives, root is somebody whom the system refuses what is not to be read.
class AsNobody {
public:
    AsNobody() : isRoot(geteuid() == 0) { become(65534); }
    ~AsNobody() { become(0); }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;

private:
    void become(uid_t user) const {
        if (isRoot && seteuid(user) != 0) {
            ADD_FAILURE() << "root cannot become another user";
        }
    }

    bool isRoot;
};

/// The registry of a Windows under Wine with that value in it.
std::string registryWith(const std::string& value) {
    return "WINE REGISTRY Version 2\n\n"
           "[System\\\\CurrentControlSet\\\\Control\\\\Session Manager] "
           "17\n\"A\"=dword:00000001\n" +
           value + "\n[System\\\\Other] 17\n\"PendingFileRenameOperations\"=str(7):\"no\\0\"\n";
}

} // namespace

TEST_P(Healthy, HasNoFinding) {
    HealthyClient client;
    GetParam().change(client);
    for (const auto& finding : client.examine().findings) {
        ADD_FAILURE() << finding.what;
    }
}

INSTANTIATE_TEST_SUITE_P(Doctor, Healthy, testing::ValuesIn(healthy),
                         [](const auto& row) { return row.param.name; });

TEST(Doctor, WritesNothing) {
    HealthyClient client;
    client.put("update\\_1000", "half");
    client.overwritten["sandbox/host.lock"] = "";
    client.write();
    const auto before = everything(client.root());
    EXPECT_EQ(sandbox::doctor::examine(sandbox::doctor::placesOf(client.root())).findings.size(),
              1U);
    EXPECT_EQ(everything(client.root()), before);
}

TEST(Doctor, TellsWhatAClientAloneDoesNotShow) {
    HealthyClient client;
    client.put("update\\_1000", "half");
    client.write();
    const Report report =
        sandbox::doctor::examine(sandbox::doctor::placesOf(client.root() / "client"));
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_EQ(report.findings[0].code, Code::transferLeftover);
    EXPECT_EQ(report.unseen.size(), 3U);
    EXPECT_THROW(sandbox::doctor::placesOf(client.root() / "nowhere"), std::runtime_error);
}

TEST(Doctor, LosesNothingOnStrangeBytes) {
    HealthyClient client;
    client.put("\xff\xfe.dat", "\x01");
    client.setJson(padding, nlohmann::json::array({1, "two"}));
    client.overwritten["sandbox/run.json"] = "{\"holders\": [{\"id\": \"x\"}]}";
    client.overwritten["client/delayed-moves.journal"] = std::string("\0\xff\n\n", 4);
    client.examine(); // without an exception
}

TEST(Doctor, TellsWhatCannotBeReadAndDoesNotMissIt) {
    HealthyClient client;
    client.write();
    fs::permissions(client.file("engine\\core.dll"), fs::perms::none);
    fs::permissions(client.file("data"), fs::perms::none);
    std::set<std::string> told;
    {
        const AsNobody reader;
        for (const auto& finding :
             sandbox::doctor::examine(sandbox::doctor::placesOf(client.root())).findings) {
            EXPECT_EQ(finding.code, Code::unreadableFile) << finding.what;
            told.insert(finding.file);
        }
    }
    fs::permissions(client.file("data"), fs::perms::owner_all);
    EXPECT_EQ(told, (std::set<std::string>{"data", "engine\\core.dll"}));
}

TEST(Doctor, NamesWhoHoldsAFile) {
    HealthyClient client;
    const sandbox::HeldFile core(client.file("engine\\core.dll"));
    const sandbox::HeldFile guard(client.file("guard\\guard.dll"));
    const Report report = client.examine();
    const std::string process = "(process " + std::to_string(sandbox::processNumber()) + ")";
    ASSERT_EQ(report.findings.size(), 1U); // the other is to be replaced at the restart
    EXPECT_EQ(report.findings[0].code, Code::fileInUse);
    EXPECT_NE(report.findings[0].what.find(process), std::string::npos);
    ASSERT_EQ(report.inUse.size(), 2U);
    EXPECT_FALSE(report.inUse[0].replaceWaits);
    EXPECT_TRUE(report.inUse[1].replaceWaits);
}

TEST(Doctor, ReadsTheRegistryOfAWindowsFromOutside) {
    HealthyClient client;
    client.overwritten["wine/system.reg"] = registryWith(
        "\"PendingFileRenameOperations\"=str(7):\"\\\\??\\\\D:\\\\client\\\\update\\\\" +
        client.waiting +
        "\\0!\\\\??\\\\D:\\\\client\\\\guard\\\\guard.dll\\0"
        "\\\\??\\\\D:\\\\client\\\\update\\\\temp\\\\" +
        client.old + "\\0\\0\"");
    EXPECT_TRUE(client.examine().findings.empty());

    client.overwritten["wine/system.reg"] = registryWith("");
    EXPECT_EQ(client.examine().findings.at(0).code, Code::waitingNotScheduled);

    client.overwritten["wine/system.reg"] = "no registry";
    EXPECT_EQ(client.examine().findings.at(0).code, Code::delayedUnreadable);
}

TEST(Doctor, ReadsBothFormsOfARegistryValue) {
    const struct {
        const char* value;
        std::optional<std::string> expected;
    } cases[] = {
        {R"("PendingFileRenameOperations"=str(7):"a\0\x4e2d\xd83d\xde00\"\0")",
         std::string("a\0\xe4\xb8\xad\xf0\x9f\x98\x80\"\0", 11)},
        {"\"PendingFileRenameOperations\"=hex(7):61,00,00,00,\\\n  2d,4e",
         std::string("a\0\xe4\xb8\xad", 5)},
        {"\"PendingFileRenameOperations\"=str(7):\"open", std::nullopt},
        {"\"PendingFileRenameOperations\"=hex(7):zz", std::nullopt},
        {"\"PendingFileRenameOperations\"=dword:1", std::nullopt},
        {"", ""},
    };
    TemporaryFolder folder;
    for (const auto& [value, expected] : cases) {
        folder.write("system.reg", registryWith(value));
        EXPECT_EQ(sandbox::doctor::pendingRenamesIn(folder.onDisk("system.reg")), expected)
            << value;
    }
}
