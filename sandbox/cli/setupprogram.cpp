#include <chrono>
#include <iostream>
#include <stdexcept>
#include <thread>

#include "sandbox/cli/clientfile.h"
#include "sandbox/cli/filebytes.h"
#include "sandbox/materials/imageversion.h"
#include "sandbox/materials/setuppackage.h"
#include "sandbox/platform/hostprocess.h"

namespace {

namespace fs = std::filesystem;
using materials::Bytes;

constexpr const char* versionFile = "OrvSecurityver.dll";
constexpr auto patience = std::chrono::seconds(10);
constexpr auto pause = std::chrono::milliseconds(20);

/// On Windows a file that a program has loaded is not replaced, but may be moved aside.
void moveAside(const fs::path& file, const fs::path& fresh) {
    fs::path aside = file;
    aside += ".old";
    fs::rename(file, aside);
    fs::rename(fresh, file);
}

/// The host loads its modules for moments only, so a short wait mostly does.
void replace(const fs::path& file, const fs::path& fresh) {
    const auto limit = std::chrono::steady_clock::now() + patience;
    std::error_code error;
    for (fs::rename(fresh, file, error); error; fs::rename(fresh, file, error)) {
        if (std::chrono::steady_clock::now() > limit) {
            moveAside(file, fresh);
            return;
        }
        std::this_thread::sleep_for(pause);
    }
}

void put(const fs::path& file, const Bytes& content) {
    fs::path fresh = file;
    fresh += ".new";
    sandbox::writeBytes(fresh, content);
    replace(file, fresh);
}

/// Brings the client to what the package has; the version comes last.
void install(const sandbox::Folders& folders, const materials::SetupPayload& payload) {
    for (const materials::PackedFile& file : payload.files) {
        put(sandbox::clientFile(folders, file.path), file.content);
    }
    const fs::path module = sandbox::clientFile(folders, versionFile);
    put(module, materials::withVersion(sandbox::readBytes(module), payload.version));
}

} // namespace

/// The setup of a package: brings the client of the run that it lies in to the version that
/// stands behind its own bytes, and leaves a trace of its start. Status 1 when it cannot.
int main(int count, char** arguments) {
    try {
        const fs::path program = sandbox::executableFile();
        const sandbox::Folders folders = sandbox::runOf(program);
        const auto payload = materials::readPackage(sandbox::readBytes(program));
        if (!payload) {
            throw std::runtime_error("this program is no package");
        }
        if (!payload->fails) {
            install(folders, *payload);
        }
        sandbox::leaveTrace(folders, program, sandbox::ownArguments(count, arguments));
        return payload->fails ? 1 : 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
