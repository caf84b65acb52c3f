#include "sandbox/platform/childprocess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace sandbox {

namespace {

/// What a spawn needs besides the program: where it runs and what it inherits.
class SpawnPlan {
public:
    SpawnPlan() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        resetSignals();
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    void runIn(const std::filesystem::path& folder) {
        posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    }

    void writeTo(const std::filesystem::path& output) {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    }

    std::optional<pid_t> spawn(const std::filesystem::path& program, char* const* arguments) {
        posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
        pid_t process = 0;
        const int error =
            posix_spawn(&process, program.c_str(), &actions, &attributes, arguments, environ);
        return error == 0 ? std::optional(process) : std::nullopt;
    }

private:
    void resetSignals() {
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

std::optional<int> reap(std::intptr_t process, int options) {
    int status = 0;
    pid_t answer = 0;
    do {
        answer = ::waitpid(static_cast<pid_t>(process), &status, options);
    } while (answer < 0 && errno == EINTR);
    if (answer == 0) {
        return std::nullopt;
    }
    if (answer < 0) {
        return -1; // somebody else has reaped it
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

std::optional<ChildProcess> ChildProcess::start(const std::filesystem::path& program,
                                                const std::vector<std::string>& arguments,
                                                const std::filesystem::path& workingFolder,
                                                const std::filesystem::path& output) {
    std::vector<std::string> texts = arguments;
    texts.insert(texts.begin(), program.string());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);

    SpawnPlan plan;
    plan.runIn(workingFolder);
    if (!output.empty()) {
        plan.writeTo(output);
    }
    const std::optional<pid_t> started = plan.spawn(program, pointers.data());
    return started ? std::optional(ChildProcess(*started)) : std::nullopt;
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept = default;
ChildProcess::~ChildProcess() {} // there is no handle to close

long long ChildProcess::id() const {
    return process;
}

int ChildProcess::wait() {
    if (!ended) {
        ended = reap(process, 0);
    }
    return ended.value_or(-1);
}

std::optional<int> ChildProcess::poll() {
    if (!ended) {
        ended = reap(process, WNOHANG);
    }
    return ended;
}

void ChildProcess::terminate() {
    if (!poll()) {
        ::kill(static_cast<pid_t>(process), SIGTERM);
    }
}

void ChildProcess::kill() {
    if (!poll()) {
        ::kill(static_cast<pid_t>(process), SIGKILL);
    }
}

} // namespace sandbox
