#include "e2e/sandbox.h"

// What becomes of files that wait while something happens to them ahead of the restart. Under
// Wine its own list carries the moves out, here the journal does: both come to the same.

namespace e2e {
namespace {

constexpr std::uintmax_t oldSize = 8192;
constexpr std::uintmax_t newSize = 9000;
constexpr std::uintmax_t newestSize = 9500;
constexpr const char* version = "1.2.0.1500";
constexpr const char* newVersion = "1.3.0.1600";
constexpr const char* newestVersion = "1.3.0.1601";
constexpr const char* wrongHash = "0123456789abcdef0123456789abcdef";

struct Target {
    const char* name;
    std::uintmax_t size; ///< after the restart
    const char* group = "";
    bool isHeld = true;
    bool waits = true; ///< ahead of the restart
    const char* hash = "";
};

constexpr Target targets[] = {
    {"undisturbed", newSize},
    {"changed", newSize},    // something else is written over the target
    {"removed", newSize},    // the target goes
    {"sourceless", oldSize}, // the waiting file goes
    {"twice", oldSize},      // offered again, which takes the file that waited already
    {"renewed", newestSize}, // a newer one is offered ahead of the restart
    {"grouped", newSize, "locked", false},
    {"holding", newSize, "locked"},
    {"returned", oldSize, "refused", false, false},
    {"torn", newSize, "refused"}, // what waits when its group is taken back goes on waiting
    {"broken", oldSize, "refused", false, false, wrongHash},
    // Without it the packet would be done with, and nothing offered a second time.
    {"odd", oldSize, "", false, false, wrongHash},
};

std::string pathOf(const Target& target) {
    return std::string(target.name) + ".dll";
}

Json image(const char* fileVersion, std::uintmax_t size) {
    return {{"kind", "pe"}, {"version", fileVersion}, {"size", size}};
}

Json material(const std::string& name, const std::string& path, const Json& parameters,
              const char* fileVersion, std::uintmax_t size) {
    return {{"name", name},
            {"version", fileVersion},
            {"path", path},
            {"parameters", parameters},
            {"file", image(fileVersion, size)}};
}

Json materialOf(const Target& target) {
    Json parameters = Json::object();
    if (*target.group != '\0') {
        parameters["dependent"] = target.group;
    }
    if (*target.hash != '\0') {
        parameters["file_md5"] = target.hash;
    }
    return material(target.name, pathOf(target), parameters, newVersion, newSize);
}

/// Two runs ahead of the restart, of which the second offers a part once more.
Json scenario() {
    Json files = Json::array({{{"path", "service.exe"}, {"kind", "holder"}}});
    Json held = Json::array();
    Json materials = Json::array();
    Json offers = Json::array();
    for (const Target& target : targets) {
        files.push_back(image(version, oldSize));
        files.back()["path"] = pathOf(target);
        materials.push_back(materialOf(target));
        offers.push_back(target.name);
        if (target.isHeld) {
            held.push_back({{"file", pathOf(target)}, {"by", "service.exe"}});
        }
    }
    materials.push_back(
        material("newest", "renewed.dll", Json::object(), newestVersion, newestSize));
    const Json run = {{"do", "run"},
                      {"set", {{"KEY_UPDATE_KELVAR_LAST_CHECK_TIME", 1}}},
                      {"asks", {{"version", version}, {"oid", 1001}, {"id", 2002}}},
                      {"offers", offers},
                      {"expect", {{"client", "either"}}}};
    Json second = run;
    second["offers"] = {"twice", "newest", "odd"};
    return {{"title", "files that wait for the restart"},
            {"seed", 90},
            {"client",
             {{"version", version},
              {"versions", {{"update\\version.dat", version}}},
              {"files", files},
              {"held", held},
              {"fileListEntries", 20}}},
            {"platform", {{"version", newVersion}, {"materials", materials}}},
            {"phases", Json::array({run, second})}};
}

TEST_F(Sandbox, RestartsWithWhatIsLeftOfTheWaitingFiles) {
    const fs::path file = folder / "waiting.json";
    std::ofstream(file) << scenario().dump(2);
    ASSERT_EQ(xsandbox({"run", file.string(), "--keep"}), asExpected) << said;
    const fs::path client = folder / "run" / "client";
    const Json settings = Json::parse(textOf(folder / "run" / "sandbox" / "settings.json"));
    const Json waiting =
        Json::parse(settings.at("KEY_UPDATE_KELVAR_PADDING_FILE_LIST").get<std::string>());
    for (const Target& target : targets) {
        EXPECT_EQ(waiting.contains(pathOf(target)), target.waits) << target.name;
        EXPECT_EQ(fs::file_size(client / pathOf(target)), oldSize) << target.name;
    }
    std::ofstream(client / "changed.dll") << "something else";
    fs::remove(client / "removed.dll");
    ASSERT_TRUE(fs::remove(client / "update" / waiting.at("sourceless.dll").get<std::string>()));
    EXPECT_EQ(xsandbox({"restart"}), asExpected) << said;
    for (const Target& target : targets) {
        const fs::path path = client / pathOf(target);
        EXPECT_EQ(fs::exists(path) ? fs::file_size(path) : 0, target.size) << target.name;
    }
}

} // namespace
} // namespace e2e
