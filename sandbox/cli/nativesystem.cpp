#include "sandbox/cli/clientsystem.h"

#include "sandbox/cli/filebytes.h"
#include "sandbox/platform/otherprocess.h"

namespace sandbox {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t channelImageSize = 4096;

class NativeSystem final : public ClientSystem {
public:
    using ClientSystem::ClientSystem;

    const char* name() const override { return "native"; }
    void install(const fs::path& /*binaries*/) override {}
    std::string programFile(const std::string& program) const override { return program; }

    /// An ELF file has no version resource, so an image with one has the module's name, and
    /// the module itself lies beside it, where the loader looks first.
    void layOutModule(const fs::path& built, const fs::path& target,
                      const std::string& version) const override {
        const FilePlan image{kindPe, version, channelImageSize};
        writeBytes(target, bytesOf(image, 0, target.filename().string()));
        fs::copy_file(built, target.string() + ".so");
    }

    std::string spelled(const fs::path& file) const override { return file.string(); }

    std::optional<ChildProcess> start(const fs::path& program,
                                      const std::vector<std::string>& arguments,
                                      const fs::path& output) const override {
        return ChildProcess::start(program, arguments, folders().client(), output);
    }

    bool runs(long long process, const fs::path& program) const override {
        return processFile(process) == program;
    }

    PendingList pending() const override { return pendingList(folders().client()); }

    Restarted restart() override {
        std::vector<PendingMove> waited = pending().moves;
        return {std::move(waited), carryOutMoves(folders().client())};
    }

    void shutDown() override {}
};

} // namespace

std::unique_ptr<ClientSystem> nativeSystem(const Folders& folders) {
    return std::make_unique<NativeSystem>(folders);
}

std::unique_ptr<ClientSystem> systemOf(const Folders& folders) {
    return fs::exists(wineFolder(folders)) ? wineSystem(folders) : nativeSystem(folders);
}

} // namespace sandbox
