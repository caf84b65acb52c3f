#include "sandbox/check/mistake.h"

#include <algorithm>

namespace sandbox::check {

std::vector<Mistake> Mistakes::sorted() const {
    std::vector<Mistake> all = found;
    std::stable_sort(all.begin(), all.end(),
                     [](const Mistake& a, const Mistake& b) { return a.line < b.line; });
    return all;
}

} // namespace sandbox::check
