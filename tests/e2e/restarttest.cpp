#include "e2e/sandbox.h"

// What becomes of files that wait while something happens to them ahead of the restart. Under
// Wine its own list carries the moves out, here the journal does: both come to the same.

namespace e2e {
namespace {

constexpr std::uintmax_t oldSize = 8192;
constexpr std::uintmax_t newSize = 9000;
constexpr const char* version = "1.2.0.1500";

struct Waiting {
    const char* name;
    std::uintmax_t size; ///< of the target after the restart
    const char* group = nullptr;
    bool isHeld = true;
};

constexpr Waiting targets[] = {
    {"undisturbed", newSize},
    {"changed", newSize},    // something else is written over the target
    {"removed", newSize},    // the target goes
    {"sourceless", oldSize}, // the waiting file goes
    {"twice", oldSize},      // offered again, which takes the file that waited already
    {"grouped", newSize, "g", false},
    {"holding", newSize, "g"},
};

Json scenarioOf(const std::string& refused) {
    Json files = Json::array({{{"path", "service.exe"}, {"kind", "holder"}}});
    Json held = Json::array();
    Json materials = Json::array();
    const auto image = [](const char* fileVersion, std::uintmax_t size) {
        return Json{{"kind", "pe"}, {"version", fileVersion}, {"size", size}};
    };
    const auto offer = [&](const std::string& name, const Json& parameters) {
        materials.push_back({{"name", name},
                             {"version", "1.3.0.1600"},
                             {"path", name + ".dll"},
                             {"parameters", parameters},
                             {"file", image("1.3.0.1600", newSize)}});
    };
    for (const Waiting& target : targets) {
        const std::string path = std::string(target.name) + ".dll";
        files.push_back(image(version, oldSize));
        files.back()["path"] = path;
        if (target.isHeld) {
            held.push_back({{"file", path}, {"by", "service.exe"}});
        }
        offer(target.name, target.group ? Json{{"dependent", target.group}} : Json(Json::object()));
    }
    // Without it the packet would be done with, and nothing offered a second time.
    offer(refused, {{"file_md5", "0123456789abcdef0123456789abcdef"}});
    const Json run = {{"do", "run"},
                      {"set", {{"KEY_UPDATE_KELVAR_LAST_CHECK_TIME", 1}}},
                      {"asks", {{"version", version}, {"oid", 1001}, {"id", 2002}}},
                      {"expect", {{"client", "either"}}}};
    Json second = run;
    second["offers"] = Json::array({"twice", refused});
    return {{"title", "files that wait for the restart"},
            {"seed", 90},
            {"client",
             {{"version", version},
              {"versions", {{"update\\version.dat", version}}},
              {"files", files},
              {"held", held},
              {"fileListEntries", 20}}},
            {"platform", {{"version", "1.3.0.1600"}, {"materials", materials}}},
            {"phases", Json::array({run, second})}};
}

TEST_F(Sandbox, RestartsWithWhatIsLeftOfTheWaitingFiles) {
    const fs::path scenario = folder / "waiting.json";
    std::ofstream(scenario) << scenarioOf("refused").dump(2);
    ASSERT_EQ(xsandbox({"run", scenario.string(), "--keep"}), asExpected) << said;
    const fs::path client = folder / "run" / "client";
    const Json settings = Json::parse(textOf(folder / "run" / "sandbox" / "settings.json"));
    const Json waiting =
        Json::parse(settings.at("KEY_UPDATE_KELVAR_PADDING_FILE_LIST").get<std::string>());
    for (const Waiting& target : targets) {
        const std::string path = std::string(target.name) + ".dll";
        EXPECT_TRUE(waiting.contains(path)) << path;
        EXPECT_EQ(fs::file_size(client / path), oldSize) << path;
    }
    std::ofstream(client / "changed.dll") << "something else";
    fs::remove(client / "removed.dll");
    ASSERT_TRUE(fs::remove(client / "update" / waiting.at("sourceless.dll").get<std::string>()));
    EXPECT_EQ(xsandbox({"restart"}), asExpected) << said;
    for (const Waiting& target : targets) {
        const fs::path file = client / (std::string(target.name) + ".dll");
        EXPECT_EQ(fs::exists(file) ? fs::file_size(file) : 0, target.size) << target.name;
    }
}

} // namespace
} // namespace e2e
