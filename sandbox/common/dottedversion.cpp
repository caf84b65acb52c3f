#include "sandbox/common/dottedversion.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace sandbox {
namespace {

constexpr std::size_t imageParts = 4;
constexpr long long largestPart = 65535;

std::vector<std::string> split(const std::string& version) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= version.size();) {
        const std::size_t end = std::min(version.find('.', begin), version.size());
        parts.push_back(version.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

long long numberOf(const std::string& part) {
    return std::strtoll(part.c_str(), nullptr, 10);
}

} // namespace

bool isDottedVersion(const std::string& version) {
    const std::vector<std::string> parts = split(version);
    return std::all_of(parts.begin(), parts.end(), [](const std::string& part) {
        return !part.empty() && part.find_first_not_of("0123456789") == std::string::npos;
    });
}

std::size_t partsOf(const std::string& version) {
    return split(version).size();
}

bool isImageVersion(const std::string& version) {
    const std::vector<std::string> parts = split(version);
    return parts.size() == imageParts && isDottedVersion(version) &&
           std::all_of(parts.begin(), parts.end(),
                       [](const std::string& part) { return numberOf(part) <= largestPart; });
}

int compareVersions(const std::string& a, const std::string& b) {
    const std::vector<std::string> left = split(a);
    const std::vector<std::string> right = split(b);
    for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
        const long long ours = numberOf(left[i]);
        const long long theirs = numberOf(right[i]);
        if (ours != theirs) {
            return ours < theirs ? -1 : 1;
        }
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

bool isToldToPlatform(const std::string& version) {
    static const std::vector<std::string> least = split("1.0.0.1001");
    const std::vector<std::string> parts = split(version);
    return parts.size() == least.size() &&
           std::equal(parts.begin(), parts.end(), least.begin(),
                      [](const std::string& part, const std::string& bound) {
                          return numberOf(part) >= numberOf(bound);
                      });
}

} // namespace sandbox
