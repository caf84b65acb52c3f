#include "sandbox/platform/hostprocess.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace sandbox {

std::filesystem::path executableFile() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error);
}

std::vector<std::string> ownArguments(int count, char** arguments) {
    return {arguments + 1, arguments + count};
}

long long processNumber() {
    return ::getpid();
}

unsigned long threadNumber() {
    return static_cast<unsigned long>(::syscall(SYS_gettid));
}

std::tm localTime(std::time_t time) {
    std::tm result{};
    ::localtime_r(&time, &result);
    return result;
}

} // namespace sandbox
