#include "sandbox/modules/xnbase/runprocess.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <string>
#include <thread>

#include "host/xnbase.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/platform/childprocess.h"
#include "sandbox/platform/parameters.h"

namespace fs = std::filesystem;

namespace {

std::atomic<int> calls{0};

class Call {
public:
    Call() { ++calls; }
    ~Call() { --calls; }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
};

constexpr const char* updateFolder = "update"; // holds what is not in place yet

/// `file` with links and ".." resolved, when it is a file below `folder`.
std::optional<fs::path> fileBelow(const fs::path& folder, const fs::path& file) {
    std::error_code error;
    const fs::path resolved = fs::canonical(file, error);
    if (error || !fs::is_regular_file(resolved, error)) {
        return std::nullopt;
    }
    const auto [end, at] =
        std::mismatch(folder.begin(), folder.end(), resolved.begin(), resolved.end());
    return end == folder.end() ? std::optional(resolved) : std::nullopt;
}

/// The first file of that name in the client's folders, in the order of their paths.
std::optional<fs::path> searchByName(const fs::path& client, const std::string& name) {
    std::optional<fs::path> found;
    std::error_code error;
    for (fs::recursive_directory_iterator at(client, error), end; !error && at != end;
         at.increment(error)) {
        const std::string entry = sandbox::pathText(at->path().filename());
        if (at.depth() == 0 && sandbox::sameName(entry, updateFolder)) {
            at.disable_recursion_pending();
        } else if (sandbox::sameName(entry, name) && at->is_regular_file(error) &&
                   (!found || at->path() < *found)) {
            found = at->path();
        }
    }
    return found ? fileBelow(client, *found) : std::nullopt;
}

/// The name relative to the client's folder; a full path that lies there is cut.
std::string relativeName(const fs::path& client, const std::string& name) {
    const std::string prefix = sandbox::toClientPath(client) + '\\';
    return sandbox::sameName(name.substr(0, prefix.size()), prefix) ? name.substr(prefix.size())
                                                                    : name;
}

std::optional<fs::path> findProgram(const fs::path& clientFolder, const std::string& file) {
    std::error_code error;
    const fs::path client = fs::canonical(clientFolder, error);
    const std::string name = relativeName(client, file);
    if (error || name.empty() || !platform::isRelativePath(name)) {
        return std::nullopt;
    }
    const std::string path = sandbox::toClientPath(client) + '\\' + name;
    if (auto direct = fileBelow(client, sandbox::pathOf(platform::systemPath(path)))) {
        return direct;
    }
    const bool bare = platform::fileNameOf(name) == name;
    return bare ? searchByName(client, name) : std::nullopt;
}

bool startProgram(const fs::path& program, const std::string& parameters,
                  const fs::path& workingFolder) {
    // A program that was just fetched has no permission to run; Windows knows of none.
    std::error_code error;
    fs::permissions(program, fs::perms::owner_exec, fs::perm_options::add, error);
    auto child =
        sandbox::ChildProcess::start(program, sandbox::splitParameters(parameters), workingFolder);
    if (!child) {
        return false;
    }
    std::thread([running = std::move(*child)]() mutable { running.wait(); }).detach();
    return true;
}

} // namespace

bool sandbox::startsProgram() {
    return calls != 0;
}

extern "C" void runProcess(const wchar_t* file, const wchar_t* parameters) {
    const Call call;
    const std::string name = file ? platform::toUtf8(file) : "";
    const std::string texts = parameters ? platform::toUtf8(parameters) : "";
    const fs::path client = sandbox::processFolders().client();
    const std::optional<fs::path> program = findProgram(client, name);
    const bool started = program && startProgram(*program, texts, client);
    sandbox::emit({{"kind", "process"},
                   {"file", name},
                   {"parameters", texts},
                   {"path", started ? sandbox::pathText(*program) : ""},
                   {"started", started}});
}

static_assert(std::is_same_v<decltype(&runProcess), xnbase::runProcess>);
