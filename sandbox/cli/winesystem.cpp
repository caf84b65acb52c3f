#include "sandbox/cli/clientsystem.h"

#include <algorithm>
#include <stdexcept>

#include "platform/files.h"
#include "sandbox/cli/filebytes.h"
#include "sandbox/cli/winecopy.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/materials/imageversion.h"
#include "sandbox/platform/wineprocess.h"

namespace sandbox {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

/// Without programs that Wine would offer to fetch, and without its debugger, which would have a
/// crash wait for a window.
const std::string overrides = "WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe,winedbg.exe=";
/// A system that is off stays off: its start would carry the delayed moves out.
const std::string overridesWithoutStart = overrides + ";wineboot.exe=d";
/// An xsandbox that was broken off leaves its Windows behind for so many seconds.
constexpr const char* lifeWithoutPrograms = "-p600";
constexpr const char* listProgram = "delayedlist.exe";

class WineSystem final : public ClientSystem {
public:
    WineSystem(const Folders& runFolders, fs::path wineOriginal)
        : ClientSystem(runFolders), original(std::move(wineOriginal)),
          prefix(wineFolder(runFolders)) {}

    const char* name() const override { return "Windows under Wine"; }

    void install(const fs::path& binaries) override {
        copyWine(original, prefix, folders().root());
        fs::copy_file(binaries / listProgram, folders().state() / listProgram);
        powerOn();
    }

    std::string programFile(const std::string& program) const override { return program + ".exe"; }

    void layOutModule(const fs::path& built, const fs::path& target,
                      const std::string& version) const override {
        writeBytes(target, materials::withVersion(readBytes(built), version));
    }

    /// Drive D: is the run's folder.
    std::string spelled(const fs::path& file) const override {
        return toClientPath(fs::path("D:") / file.lexically_relative(folders().root()));
    }

    std::optional<ChildProcess> start(const fs::path& program, const Arguments& arguments,
                                      const fs::path& output) const override {
        return startWine(overrides, program, arguments, output);
    }

    bool runs(long long process, const fs::path& program) const override {
        return isWineProcess(process, spelled(program), prefix);
    }

    PendingList pending() const override { return readList(overridesWithoutStart); }

    Restarted restart() override {
        Restarted result{pending().moves, {}};
        shutDown();
        const PendingList left = powerOn();
        for (const PendingMove& move : left.moves) {
            result.failures.push_back(move.from + ": is still to be moved");
        }
        for (const PendingMove& move : result.waited) {
            // Windows forgets a request that fails; its file tells.
            if (platform::fileExists(toClientPath(folders().root()) + move.from.substr(2))) {
                result.failures.push_back(move.from + ": was not moved");
            }
        }
        return result;
    }

    void shutDown() override {
        wineServer("-k");
        wineServer("-w");
    }

private:
    /// A command of Wine for this system. Its own files stay in the run's folder too.
    std::optional<ChildProcess> call(const std::string& overriding, const Arguments& command,
                                     const fs::path& output) const {
        Arguments arguments{"-u",
                            "DISPLAY",
                            "-u",
                            "WAYLAND_DISPLAY",
                            "WINEPREFIX=" + prefix.string(),
                            "TMPDIR=" + prefix.string(),
                            "WINEARCH=win64",
                            "LC_ALL=C.UTF-8",
                            "WINEDEBUG=-all",
                            overriding};
        arguments.insert(arguments.end(), command.begin(), command.end());
        return ChildProcess::start("/usr/bin/env", arguments, folders().client(), output);
    }

    std::optional<ChildProcess> startWine(const std::string& overriding, const fs::path& program,
                                          const Arguments& arguments,
                                          const fs::path& output) const {
        Arguments command{"wine", spelled(program)};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return call(overriding, command, output);
    }

    void wineServer(const char* argument) const {
        auto process = call(overrides, {"wineserver", argument}, folders().state() / "wine.out");
        if (process) {
            process->wait();
        }
    }

    PendingList powerOn() const {
        wineServer(lifeWithoutPrograms);
        return readList(overrides);
    }

    PendingList readList(const std::string& overriding) const;

    fs::path original;
    fs::path prefix;
};

PendingList WineSystem::readList(const std::string& overriding) const {
    const fs::path file = folders().state() / "delayed.json";
    const fs::path output = folders().state() / "wine.out";
    fs::remove(file);
    auto program = startWine(overriding, folders().state() / listProgram,
                             {spelled(file), spelled(folders().client())}, output);
    const int exit = program ? program->wait() : -1;
    const auto json = readJson(file);
    if (exit != 0 || !json) {
        throw std::runtime_error("Windows under Wine does not answer (status " +
                                 std::to_string(exit) + "), see " + output.string());
    }
    PendingList list;
    for (const auto& move : json->at("moves")) {
        list.moves.push_back({move.at("from"), move.at("to")});
    }
    json->at("faults").get_to(list.faults);
    return list;
}

} // namespace

std::unique_ptr<ClientSystem> wineSystem(const Folders& folders, const fs::path& original) {
    return std::make_unique<WineSystem>(folders, original);
}

fs::path wineFolder(const Folders& folders) {
    return folders.root() / "wine";
}

} // namespace sandbox
