#include "sandbox/cli/layout.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/clientstate.h"
#include "sandbox/cli/filebytes.h"
#include "sandbox/cli/filelistxml.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/filelock.h"

namespace sandbox {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// The client's modules as they are copied; the channel module is laid out apart.
constexpr std::array<const char*, 7> modules{"xnbase.dll",    "OrvBase.dll", "XNGuardBase.dll",
                                             "XNSetting.dll", "xnuser.dll",  "xnquiet.dll",
                                             "xncurl.dll"};
constexpr const char* channelModule = "OrvSecurityver.dll";
constexpr const char* plugin = "xrefresher.dll";
constexpr const char* pluginFolder = "xnplugins";
/// A client path has less than 260 characters; this leaves room for files below.
constexpr std::size_t longestClientPath = 160;
constexpr auto endLimit = std::chrono::seconds(2);
constexpr auto lookPause = std::chrono::milliseconds(20);

void copyFile(const fs::path& from, const fs::path& to) {
    if (!fs::exists(from)) {
        throw std::runtime_error(from.string() + " is not built");
    }
    fs::create_directories(to.parent_path());
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
}

bool isLeftOut(const Scenario& scenario, const std::string& name) {
    const auto& names = scenario.client.leaveOut;
    return std::find(names.begin(), names.end(), name) != names.end();
}

void copyModules(const Scenario& scenario, const ClientSystem& system, const fs::path& binaries) {
    const fs::path client = system.folders().client();
    const std::string host = system.programFile("trayhost");
    copyFile(binaries / host, client / host);
    for (const char* module : modules) {
        if (!isLeftOut(scenario, module)) {
            copyFile(binaries / module, client / module);
        }
    }
    if (!isLeftOut(scenario, channelModule)) {
        system.layOutModule(binaries / channelModule, client / channelModule,
                            scenario.client.version);
    }
    if (!isLeftOut(scenario, plugin)) {
        copyFile(binaries / plugin, client / pluginFolder / plugin);
    }
}

void writeClientFile(const Scenario& scenario, const ClientSystem& system, const fs::path& binaries,
                     const ClientFile& file) {
    const fs::path target = clientFile(system.folders(), file.path);
    if (file.file.kind == kindProgram) {
        copyFile(binaries / system.programFile("sampleprogram"), target);
    } else if (file.file.kind == kindHolder) {
        copyFile(binaries / system.programFile("holdfile"), target);
    } else {
        writeBytes(target, bytesOf(file.file, scenario.seed, file.path));
    }
}

/// Versions of data files are in the version store, those of the scenario's own first.
Json versionStore(const Scenario& scenario) {
    Json versions = scenario.client.versions;
    for (const ClientFile& file : scenario.client.files) {
        if (file.file.kind == kindData && !file.file.version.empty()) {
            versions.emplace(file.path, file.file.version);
        }
    }
    return versions;
}

std::vector<ListedFile> listedFiles(const Scenario& scenario, const Folders& folders) {
    std::vector<ListedFile> entries;
    for (const ClientFile& file : scenario.client.files) {
        const fs::path path = clientFile(folders, file.path);
        entries.push_back({file.path, file.file.version, md5OfFile(path),
                           file.file.kind == kindPe ? "true" : "false",
                           std::to_string(fs::file_size(path))});
    }
    return entries;
}

void save(const fs::path& file, const Json& json) {
    if (!writeJson(file, json)) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

void writeStores(const Scenario& scenario, const ClientSystem& system, const std::string& address) {
    const Folders& folders = system.folders();
    Json config{{"serverAddress", address}, {"upgradeAddress", address}};
    config.merge_patch(scenario.client.config);
    config["homeDirectory"] = system.spelled(folders.home());
    save(folders.config(), config);
    save(folders.settings(), scenario.client.settings);
    save(folders.versions(), versionStore(scenario));
    if (!scenario.client.testIni.empty()) {
        std::ofstream(folders.client() / "test_update_kelvar.ini") << scenario.client.testIni;
    }
}

} // namespace

std::vector<std::string> moduleFiles() {
    std::vector<std::string> files(modules.begin(), modules.end());
    files.emplace_back(channelModule);
    files.push_back(std::string(pluginFolder) + "\\" + plugin);
    return files;
}

void refuseHosted(const Folders& folders) {
    const auto end = std::chrono::steady_clock::now() + endLimit;
    while (FileLock::isTaken(folders.hostLock())) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("a host runs in " + folders.root().string() +
                                     "; \"xsandbox stop\" ends it");
        }
        std::this_thread::sleep_for(lookPause);
    }
}

void clearRunFolder(const Folders& folders) {
    const fs::path& root = folders.root();
    if (folders.client().string().size() > longestClientPath) {
        throw std::runtime_error("the path of " + root.string() + " is too long for a client");
    }
    if (fs::exists(root) && !fs::is_empty(root) && !fs::exists(folders.config())) {
        throw std::runtime_error(root.string() + " holds something else than a run");
    }
    for (const fs::path& part : {folders.client(), folders.home(), folders.storage(),
                                 folders.state(), wineFolder(folders)}) {
        fs::remove_all(part);
    }
    // The mark of a run comes first: a layout that breaks off can be cleared again.
    fs::create_directories(tracesFolder(folders));
    save(folders.config(), Json::object());
    fs::create_directories(folders.client());
    fs::create_directories(folders.storage());
    fs::create_directories(folders.home());
}

void layOutClient(const Scenario& scenario, const ClientSystem& system, const fs::path& binaries,
                  const std::string& address) {
    const Folders& folders = system.folders();
    copyModules(scenario, system, binaries);
    for (const std::string& folder : scenario.client.folders) {
        fs::create_directories(clientFile(folders, folder));
    }
    for (const ClientFile& file : scenario.client.files) {
        writeClientFile(scenario, system, binaries, file);
    }
    writeStores(scenario, system, address);
    if (scenario.client.fileListEntries > 0) {
        writeFileList(fileListPath(folders), listedFiles(scenario, folders),
                      scenario.client.fileListEntries);
        copyFile(fileListPath(folders), firstFileListPath(folders));
    }
}

} // namespace sandbox
