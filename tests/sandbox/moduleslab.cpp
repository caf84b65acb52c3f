#include "moduleslab.h"

#include <fstream>
#include <gtest/gtest.h>
#include <random>

#include "platform/text.h"
#include "sandbox/common/config.h"
#include "sandbox/common/events.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/hostprocess.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* moduleFiles[] = {"xnbase.dll",  "XNSetting.dll",     "xnuser.dll",
                                       "xnquiet.dll", "OrvBase.dll",       "XNGuardBase.dll",
                                       "xncurl.dll",  "OrvSecurityver.dll"};

/// One client that differs from a healthy one wherever a test looks.
nlohmann::json clientOfTests() {
    sandbox::Config config;
    config.httpTimeoutMs = 2000;
    config.channelType = "a_channel";
    config.badSignature = {"Bad.dll"};
    return config;
}

} // namespace

sandbox::Folders lab::layOut(const fs::path& parent) {
    sandbox::Folders folders(parent / ("modules-" + std::to_string(std::random_device()())));
    fs::create_directories(folders.client());
    fs::create_directories(folders.state());
    const fs::path program = sandbox::executableFile();
    // No links, as no link to an image that runs anywhere can be deleted on Windows.
    fs::copy_file(program, folders.client() / program.filename());
    for (const char* file : moduleFiles) {
        fs::copy_file(program.parent_path() / file, folders.client() / file);
    }
    sandbox::writeJson(folders.config(), clientOfTests());
    sandbox::writeJson(
        folders.settings(),
        {{"text", "value"}, {"small", 5}, {"big", 4294967296}, {"negative", -1}, {"real", 1.5}});
    sandbox::writeJson(folders.versions(), {{"update\\version.dat", "1.2"}, {"odd", 3}});
    return folders;
}

void* lab::address(const wchar_t* module, const char* name) {
    platform::ModuleHandle handle = platform::findModule(module);
    handle = handle ? handle : platform::loadModule(module);
    void* const found = platform::findExport(handle, name);
    EXPECT_NE(found, nullptr) << platform::toUtf8(module) << ' ' << name;
    return found;
}

lab::Events::Events() {
    std::error_code absent;
    start = fs::file_size(sandbox::processFolders().events(), absent);
    start = absent ? 0 : start;
}

std::vector<nlohmann::json> lab::Events::of(const std::string& kind) const {
    std::ifstream stream(sandbox::processFolders().events(), std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(start));
    std::vector<nlohmann::json> found;
    for (std::string line; std::getline(stream, line);) {
        nlohmann::json event = nlohmann::json::parse(line);
        if (event.at("kind") == kind) {
            found.push_back(std::move(event));
        }
    }
    return found;
}
