#include "sandbox/platform/wineprocess.h"

#include <fstream>
#include <iterator>

namespace sandbox {

namespace {

std::string bytesOf(long long id, const char* file) {
    std::ifstream stream("/proc/" + std::to_string(id) + "/" + file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

bool isWineProcess(long long id, const std::string& program, const std::filesystem::path& prefix) {
    const std::string zero(1, '\0');
    const std::string command = bytesOf(id, "cmdline");
    const std::string environment = zero + bytesOf(id, "environ");
    return command.rfind(program + zero, 0) == 0 &&
           environment.find(zero + "WINEPREFIX=" + prefix.string() + zero) != std::string::npos;
}

} // namespace sandbox
