#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace sandbox {

/// A program that this process has started. It gets no descriptor beyond the three
/// standard streams, and the system's default signal handling. One thread at a time.
class ChildProcess {
public:
    /// Nothing when the file is no program or cannot be started. `arguments` goes without
    /// the program's own name. With `output` both output streams go to that file.
    static std::optional<ChildProcess> start(const std::filesystem::path& program,
                                             const std::vector<std::string>& arguments,
                                             const std::filesystem::path& workingFolder,
                                             const std::filesystem::path& output = {});

    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Gives the program up; it runs on, and on posix stays a zombie until this process
    /// ends unless wait or poll has told its end.
    ~ChildProcess();

    /// The system's number of the process.
    long long id() const;

    /// Blocks until the program has ended. Its exit status; 128 and more is the number of
    /// the signal that ended it plus 128.
    int wait();

    /// The exit status as wait gives it, or nothing while the program runs.
    std::optional<int> poll();

    /// Asks the program to end (SIGTERM; on Windows ends it).
    void terminate();

    /// Ends the program without asking.
    void kill();

private:
    explicit ChildProcess(std::intptr_t systemProcess) : process(systemProcess) {}

    std::intptr_t process; ///< the number on posix, the handle on Windows
    std::optional<int> ended;
};

} // namespace sandbox
