#include "sandbox/report/conditions.h"

#include <cstdlib>
#include <optional>

namespace sandbox::report {
namespace {

std::vector<std::string> partsOf(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t at = text.find(separator); at != std::string::npos;
         at = text.find(separator, from)) {
        parts.push_back(text.substr(from, at - from));
        from = at + separator.size();
    }
    parts.push_back(text.substr(from));
    return parts;
}

std::optional<Clause> clauseOf(const std::string& text, const std::string& tag) {
    const std::size_t tagAt = text.find(tag);
    const std::size_t open = text.find('"');
    const std::size_t close = open == std::string::npos ? open : text.find('"', open + 1);
    if (tagAt == std::string::npos || close == std::string::npos || open < tagAt + tag.size()) {
        return std::nullopt;
    }
    const std::size_t opAt = tagAt + tag.size();
    return Clause{text.substr(opAt, open - opAt), text.substr(open + 1, close - open - 1)};
}

} // namespace

int compareVersions(const std::string& a, const std::string& b) {
    const auto left = partsOf(a, ".");
    const auto right = partsOf(b, ".");
    for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
        const long long mine = std::strtoll(left[i].c_str(), nullptr, 10);
        const long long other = std::strtoll(right[i].c_str(), nullptr, 10);
        if (mine != other) {
            return mine < other ? -1 : 1;
        }
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

bool Clause::holds(const std::string& version) const {
    const int result = compareVersions(version, bound);
    if (op == ">" || op == ">=") {
        return result > 0 || (result == 0 && op == ">=");
    }
    return op == "==" ? result == 0 : result < 0 || (result == 0 && op == "<=");
}

std::vector<Clause> clausesOf(const std::string& expression, const std::string& tag) {
    std::optional<Clause> low;
    std::optional<Clause> high;
    for (const std::string& part : partsOf(expression, "&&")) {
        const std::optional<Clause> clause = clauseOf(part, tag);
        if (clause && (clause->op == ">" || clause->op == ">=")) {
            low = clause;
        } else if (clause && (clause->op == "<" || clause->op == "<=" || clause->op == "==")) {
            high = clause;
        }
    }
    std::vector<Clause> clauses;
    bool isBound = false;
    for (const auto& side : {low, high}) {
        if (side) {
            clauses.push_back(*side);
            isBound = isBound || !side->bound.empty();
        }
    }
    // With nothing but empty bounds a client compares nothing.
    return isBound ? clauses : std::vector<Clause>{};
}

} // namespace sandbox::report
