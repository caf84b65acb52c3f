#include "soak/facts.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace soak {
namespace {

/// The number behind the name in /proc/N/status.
double statusOf(const std::string& text, const std::string& name) {
    const std::size_t at = text.find("\n" + name + ":");
    std::istringstream rest(at == std::string::npos ? "" : text.substr(at + name.size() + 2));
    double number = 0;
    rest >> number;
    return number;
}

/// User and system time of /proc/N/stat; the name of the program may hold blanks.
double cpuOf(const std::string& text) {
    std::istringstream rest(text.substr(std::min(text.rfind(')') + 1, text.size())));
    std::vector<std::string> fields{std::istream_iterator<std::string>(rest), {}};
    if (fields.size() < 13) {
        return 0;
    }
    return (std::stod(fields[11]) + std::stod(fields[12])) /
           static_cast<double>(sysconf(_SC_CLK_TCK));
}

} // namespace

Facts factsOf(const std::string& stat, const std::string& status) {
    return {cpuOf(stat), statusOf(status, "Threads"), 0, statusOf(status, "RssAnon"),
            statusOf(status, "VmRSS")};
}

double toldHandles(int exit, const std::string& text) {
    std::istringstream told(text);
    double count = 0;
    told >> count;
    if (exit != 0 || count <= 0) {
        throw std::runtime_error("the handles of the host cannot be counted: error " +
                                 std::to_string(exit) + ", \"" + text + '"');
    }
    return count;
}

} // namespace soak
