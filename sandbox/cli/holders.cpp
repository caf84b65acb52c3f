#include "sandbox/cli/holders.h"

#include <chrono>
#include <fstream>
#include <map>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/layout.h"

namespace sandbox {
namespace {

constexpr auto readyLimit = std::chrono::seconds(20);

bool saysReady(const std::filesystem::path& output) {
    std::ifstream stream(output);
    std::string word;
    return stream >> word && word == "ready";
}

void waitUntilReady(ChildProcess& process, const std::filesystem::path& output,
                    const std::string& program) {
    const auto limit = std::chrono::steady_clock::now() + readyLimit;
    while (!saysReady(output)) {
        if (process.poll() || std::chrono::steady_clock::now() > limit) {
            throw std::runtime_error(program + " cannot hold its files, see " + output.string());
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

Holder start(const ClientSystem& system, const std::string& by,
             const std::vector<std::string>& files, std::size_t number) {
    const Folders& folders = system.folders();
    std::vector<std::string> arguments;
    std::string names;
    for (const std::string& file : files) {
        arguments.push_back(system.spelled(clientFile(folders, file)));
        names += (names.empty() ? "" : ", ") + file;
    }
    const auto program = clientFile(folders, by);
    const auto output = folders.state() / ("holder" + std::to_string(number) + ".out");
    auto process = system.start(program, arguments, output);
    if (!process) {
        throw std::runtime_error(program.string() + " cannot be started");
    }
    waitUntilReady(*process, output, by);
    return {process->id(), program.string(), names};
}

} // namespace

std::vector<Holder> startHolders(const Scenario& scenario, const ClientSystem& system) {
    std::map<std::string, std::vector<std::string>> filesByProgram;
    for (const HeldPlan& held : scenario.client.held) {
        filesByProgram[held.by].push_back(held.file);
    }
    std::vector<Holder> holders;
    holders.reserve(filesByProgram.size());
    for (const auto& [by, files] : filesByProgram) {
        holders.push_back(start(system, by, files, holders.size() + 1));
    }
    return holders;
}

Holder startHolder(const ClientSystem& system, const std::string& by, const std::string& file,
                   std::size_t number) {
    return start(system, by, {file}, number);
}

} // namespace sandbox
