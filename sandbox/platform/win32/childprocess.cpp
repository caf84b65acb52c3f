#include "sandbox/platform/childprocess.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <windows.h>

#include "platform/text.h"

namespace sandbox {

namespace {

constexpr UINT endedByForce = 1;

HANDLE handleOf(std::intptr_t process) {
    return reinterpret_cast<HANDLE>(process);
}

/// The piece in quotes, such that splitParameters gives it back.
std::wstring quoted(const std::wstring& piece) {
    std::wstring text = L"\"";
    std::size_t slashes = 0;
    for (const wchar_t c : piece) {
        if (c == L'"') {
            text.append(slashes + 1, L'\\'); // doubles those before it and marks the quote
        }
        slashes = c == L'\\' ? slashes + 1 : 0;
        text += c;
    }
    text.append(slashes, L'\\');
    return text + L'"';
}

std::wstring commandLine(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments) {
    std::wstring line = quoted(program.wstring());
    for (const std::string& argument : arguments) {
        line += L' ' + quoted(platform::toWide(argument));
    }
    return line;
}

HANDLE openOutput(const std::filesystem::path& output) {
    return CreateFileW(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                       CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// What a start needs besides the program: the standard streams, and that the program
/// inherits these and none of the other handles, of which any open file may be one.
class StartPlan {
public:
    explicit StartPlan(const std::filesystem::path& output) {
        startup.StartupInfo.cb = sizeof startup;
        file = output.empty() ? INVALID_HANDLE_VALUE : openOutput(output);
        const bool redirected = file != INVALID_HANDLE_VALUE;
        startup.StartupInfo.hStdInput = inherit(GetStdHandle(STD_INPUT_HANDLE));
        startup.StartupInfo.hStdOutput =
            inherit(redirected ? file : GetStdHandle(STD_OUTPUT_HANDLE));
        startup.StartupInfo.hStdError = inherit(redirected ? file : GetStdHandle(STD_ERROR_HANDLE));
        limitInheritance();
    }
    ~StartPlan() {
        if (startup.lpAttributeList) {
            DeleteProcThreadAttributeList(startup.lpAttributeList);
        }
        if (file != INVALID_HANDLE_VALUE) {
            CloseHandle(file);
        }
    }
    StartPlan(const StartPlan&) = delete;
    StartPlan& operator=(const StartPlan&) = delete;

    HANDLE start(const std::filesystem::path& program, std::wstring line,
                 const std::filesystem::path& workingFolder) {
        PROCESS_INFORMATION started{};
        if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr,
                           startup.lpAttributeList ? TRUE : FALSE,
                           CREATE_NEW_PROCESS_GROUP | EXTENDED_STARTUPINFO_PRESENT, nullptr,
                           workingFolder.c_str(), &startup.StartupInfo, &started) == 0) {
            return nullptr;
        }
        CloseHandle(started.hThread);
        return started.hProcess;
    }

private:
    HANDLE inherit(HANDLE stream) {
        if (stream && stream != INVALID_HANDLE_VALUE &&
            SetHandleInformation(stream, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) != 0 &&
            std::find(inherited.begin(), inherited.end(), stream) == inherited.end()) {
            inherited.push_back(stream);
        }
        return stream;
    }

    void limitInheritance() {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory.resize(size);
        auto* list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory.data());
        if (!inherited.empty() && InitializeProcThreadAttributeList(list, 1, 0, &size) != 0 &&
            UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, inherited.data(),
                                      inherited.size() * sizeof(HANDLE), nullptr, nullptr) != 0) {
            startup.lpAttributeList = list;
            startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        }
    }

    HANDLE file = INVALID_HANDLE_VALUE;
    std::vector<HANDLE> inherited;
    std::vector<std::byte> memory;
    STARTUPINFOEXW startup{};
};

} // namespace

std::optional<ChildProcess> ChildProcess::start(const std::filesystem::path& program,
                                                const std::vector<std::string>& arguments,
                                                const std::filesystem::path& workingFolder,
                                                const std::filesystem::path& output) {
    const HANDLE started =
        StartPlan(output).start(program, commandLine(program, arguments), workingFolder);
    return started ? std::optional(ChildProcess(reinterpret_cast<std::intptr_t>(started)))
                   : std::nullopt;
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : process(std::exchange(other.process, 0)), ended(other.ended) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    std::swap(process, other.process);
    std::swap(ended, other.ended);
    return *this;
}

ChildProcess::~ChildProcess() {
    if (process != 0) {
        CloseHandle(handleOf(process));
    }
}

long long ChildProcess::id() const {
    return GetProcessId(handleOf(process));
}

int ChildProcess::wait() {
    WaitForSingleObject(handleOf(process), INFINITE);
    return poll().value_or(-1);
}

std::optional<int> ChildProcess::poll() {
    DWORD code = 0;
    if (!ended && WaitForSingleObject(handleOf(process), 0) == WAIT_OBJECT_0 &&
        GetExitCodeProcess(handleOf(process), &code) != 0) {
        ended = static_cast<int>(code);
    }
    return ended;
}

void ChildProcess::terminate() {
    kill();
}

void ChildProcess::kill() {
    if (!poll()) {
        TerminateProcess(handleOf(process), endedByForce);
    }
}

} // namespace sandbox
