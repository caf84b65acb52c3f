#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/script.h"
#include "sandbox/faults/fault.h"

/// A scenario file in memory; sandbox/scenarios/README.md describes the format.
namespace sandbox {

/// Text of a file's kind.
inline constexpr const char* kindPe = "pe";           ///< an image with a version resource
inline constexpr const char* kindData = "data";       ///< bytes
inline constexpr const char* kindProgram = "program"; ///< starts and leaves a trace
inline constexpr const char* kindHolder = "holder";   ///< keeps files in use while it runs

/// A file to be made. Its bytes follow from the scenario's seed and the file's name.
struct FilePlan {
    std::string kind = kindData;
    std::string version;
    std::size_t size = 1024;
};

struct ClientFile {
    std::string path;
    FilePlan file;
};

/// A file that a running program of the client keeps in use.
struct HeldPlan {
    std::string file;
    std::string by;
};

struct ClientPlan {
    std::string version;
    std::map<std::string, std::string> versions; ///< the version store
    std::vector<ClientFile> files;
    std::vector<std::string> folders; ///< that are there beside those of the files
    std::vector<HeldPlan> held;
    std::size_t fileListEntries = 0;     ///< 0 leaves filelist.xml out
    std::vector<std::string> leaveOut;   ///< files of the client that are not there
    std::vector<std::string> background; ///< programs that may be started at any moment
    std::string testIni;                 ///< text of test_update_kelvar.ini; empty leaves it out
    nlohmann::json config = nlohmann::json::object();
    nlohmann::json settings = nlohmann::json::object();
};

struct MemberPlan {
    std::string name;
    FilePlan file;
};

struct MaterialPlan {
    std::string name;
    std::string module;
    std::string version;
    std::string path;
    FilePlan file;
    std::string method;                            ///< of the cabinet; empty for a plain file
    std::vector<MemberPlan> members;               ///< of the cabinet beside the file itself
    std::string memberName;                        ///< of the file in the cabinet, when not its own
    std::map<std::string, std::string> parameters; ///< as sent; may overrule the right ones
    std::string md5;                               ///< as sent, when not the right one
    std::optional<std::size_t> cutTo;              ///< the stored file is cut to so many bytes
};

struct PlatformPlan {
    std::string productId = "tulsar";
    std::string channelId = "tulsar_upgrade_1.0";
    std::string version;
    std::string restartTray;
    std::map<std::string, std::string> modules; ///< versions of modules
    std::vector<MaterialPlan> materials;
};

/// One step of the scenario: a run of the client or a restart of the machine.
struct Phase {
    bool isRestart = false;
    std::string title;
    nlohmann::json options; ///< of a run: what the platform answers and expects
    nlohmann::json expect;
    std::vector<ScriptStep> script; ///< of a run: what happens while the host runs
    std::vector<Fault> faults;      ///< of a run: what goes wrong in it
    bool isJudged = true;           ///< not where a user keeps the host running
};

struct Scenario {
    std::string title;
    std::uint64_t seed = 0;
    ClientPlan client;
    PlatformPlan platform;
    nlohmann::json upgrade = nlohmann::json::object(); ///< what the upgrade server has
    std::vector<Phase> phases;
};

class ScenarioPart;

/// The members "kind", "version" and "size" of a file.
FilePlan readFilePlan(const ScenarioPart& part);

/// Throws std::runtime_error with the file's name and the reason.
Scenario readScenario(const std::filesystem::path& file);

} // namespace sandbox
