#include "fuzz/fuzz.h"

#include <cstdlib>
#include <iostream>

namespace fuzz {

std::vector<Target>& targets() {
    static std::vector<Target> all;
    return all;
}

void require(bool holds, const std::string& promise, const std::string& seen) {
    if (!holds) {
        std::cerr << "broken promise: " << promise << '\n';
        if (!seen.empty()) {
            std::cerr << "seen: " << seen << '\n';
        }
        std::cerr.flush();
        std::abort();
    }
}

std::string takeLine(std::string& rest) {
    const std::size_t end = rest.find('\n');
    std::string line = rest.substr(0, end);
    rest.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

std::string zeroTerminated(const std::string& text) {
    return text.substr(0, text.find('\0'));
}

} // namespace fuzz
