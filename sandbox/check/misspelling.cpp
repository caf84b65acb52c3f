#include "sandbox/check/misspelling.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "sandbox/common/filefacts.h"

namespace sandbox::check {
namespace {

constexpr std::size_t likely = 2; // letters that differ

/// Letters alone: case and what stands between words do not make another name.
std::string core(const std::string& name) {
    std::string letters = lowered(name);
    letters.erase(std::remove_if(letters.begin(), letters.end(),
                                 [](char c) { return c == '_' || c == '-' || c == ' '; }),
                  letters.end());
    return letters;
}

/// The number of letters to put in, take out or change to get from one to the other.
std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, changed}));
        }
    }
    return row.back();
}

} // namespace

std::optional<std::string> meantBy(const std::string& name, std::span<const char* const> known) {
    if (std::find(known.begin(), known.end(), name) != known.end()) {
        return std::nullopt;
    }
    for (const char* one : known) {
        if (distance(core(name), core(one)) <= likely) {
            return one;
        }
    }
    return std::nullopt;
}

} // namespace sandbox::check
