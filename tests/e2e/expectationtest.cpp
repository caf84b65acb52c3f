#include "e2e/sandbox.h"

// A scenario's expectations that do not come true.

namespace e2e {
namespace {

struct Wrong {
    const char* value; ///< of the first step's expectation, as the rest of a JSON patch
    const char* told;
};

/// Each expectation that is wrong is told, by what was expected and what was found.
class WrongExpectation : public Sandbox {
protected:
    void expectTold(const char* scenario, const std::vector<Wrong>& rows) {
        std::string patch;
        for (const Wrong& row : rows) {
            patch += (patch.empty() ? "[" : ",") +
                     (R"({"op":"add","path":"/phases/0/expect/)" + std::string(row.value) + "}");
        }
        EXPECT_EQ(xsandbox({"run", patched(scenario, patch + "]")}), different) << said;
        for (const Wrong& row : rows) {
            EXPECT_TRUE(says(row.told)) << row.told << "\n" << said;
        }
    }
};

TEST_F(WrongExpectation, IsToldOfTheKelvarChannel) {
    expectTold(
        "small.json",
        {{R"(materials/core","value":["refused","1.2.0.1500","already up to date"])",
          "core: expected refused: already up to date, found placed"},
         {R"(materials/data","value":["placed","1.3.0.1601"])",
          "data: version at data\\new.dat: expected 1.3.0.1601, found 1.3.0.1600"},
         {R"(programs","value":[])", "programs, number 1 of 0: expected nothing, found helper.exe"},
         {R"(notifications","value":[])", "notifications, number 1 of 0"},
         {R"(downloads","value":["data","core"])", "number 1 of 2: expected data, found core"},
         {R"(versions","value":{})", "version store, data\\new.dat: expected none"},
         {R"(fileList","value":{"entries":11,"of":["data"]})", "filelist.xml, engine\\core.dll"},
         {R"(settings","value":{})", "setting KEY_UPDATE_KELVAR_TEMP_FILE_LIST: expected none"},
         {R"(update","value":[])", "folder update: expected no other files"},
         {R"(delayed","value":{"deletes":0})", "found 0 replaces, 1 deletes"},
         {R"(hostExit","value":3)", "exit status of the host: expected 3, found 0"},
         {R"(failures","value":["no such failure"])", "failure: expected no such failure"},
         {R"(logs","value":["no such line"])", "a line with \"no such line\""}});
}

TEST_F(WrongExpectation, IsToldOfTheOtherChannels) {
    expectTold("package-automatic.json",
               {{R"(events","value":["101","102 to 99"])", "expected 102 to 99, found 102 to 100"},
                {R"(record","value":3)", "setting KEY_UPDATE_UPGRADE: expected"},
                {R"(packageChecks","value":2)", "packageChecks: expected 2, found 1"},
                {R"(packageDownloads","value":0)", "packageDownloads: expected 0, found 1"},
                {R"(fileChecks","value":0)", "fileChecks: expected 0, found 1"},
                {R"(fileDownloads","value":["patchlib0.dat"])", "fileDownloads, number 1 of 1"},
                {R"(background","value":{"orvdefender.exe --install":2})",
                 "starts of orvdefender.exe --install: expected 2, found 1"},
                {R"(reports","value":1)", "reports: expected 1 at least, found 0"},
                {R"(contents","value":{"update\\setup.exe":"0"})", "content of update\\setup.exe"},
                {R"(fileVersions","value":{"OrvSecurityver.dll":"1.2.0.1500"})",
                 "version of OrvSecurityver.dll: expected 1.2.0.1500, found 1.4.0.1"},
                {R"(fileList","value":{"entries":11,"versionFile":"1.4.0.1"})",
                 "filelist.xml, orvsecurityver.dll"}});
}

} // namespace
} // namespace e2e
