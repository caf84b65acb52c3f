#include "sandbox/platform/childprocess.h"

#include <utility>
#include <windows.h>

namespace sandbox {

namespace {

constexpr UINT endedByForce = 1;

HANDLE handleOf(std::intptr_t process) {
    return reinterpret_cast<HANDLE>(process);
}

std::wstring toWide(const std::string& utf8) {
    const int size =
        MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(), size);
    return wide;
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
        line += L' ' + quoted(toWide(argument));
    }
    return line;
}

HANDLE openOutput(const std::filesystem::path& output) {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    return output.empty()
               ? INVALID_HANDLE_VALUE
               : CreateFileW(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                             &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

std::optional<ChildProcess> ChildProcess::start(const std::filesystem::path& program,
                                                const std::vector<std::string>& arguments,
                                                const std::filesystem::path& workingFolder,
                                                const std::filesystem::path& output) {
    const HANDLE stream = openOutput(output);
    const bool redirected = stream != INVALID_HANDLE_VALUE;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    if (redirected) {
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = stream;
        startup.hStdError = stream;
    }
    std::wstring line = commandLine(program, arguments);
    PROCESS_INFORMATION started{};
    const BOOL done = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr,
                                     redirected ? TRUE : FALSE, CREATE_NEW_PROCESS_GROUP, nullptr,
                                     workingFolder.c_str(), &startup, &started);
    if (redirected) {
        CloseHandle(stream);
    }
    if (done == 0) {
        return std::nullopt;
    }
    CloseHandle(started.hThread);
    return ChildProcess(reinterpret_cast<std::intptr_t>(started.hProcess));
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
