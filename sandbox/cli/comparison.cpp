#include "sandbox/cli/comparison.h"

#include <algorithm>

namespace sandbox {

void Comparison::differ(const std::string& what, const std::string& expected,
                        const std::string& got) {
    differences.push_back(what + ": expected " + expected + ", found " + got);
}

const RowGoal& Comparison::goalOf(const BuiltMaterial& material) const {
    return goals.rows.at(material.plan.name);
}

std::vector<std::string> textsOf(const nlohmann::json& expect, const char* member) {
    return expect.value(member, std::vector<std::string>());
}

void compareLists(Comparison& comparison, const std::string& what,
                  const std::vector<std::string>& expected, const std::vector<std::string>& got) {
    if (expected == got) {
        return;
    }
    const auto ends = std::mismatch(expected.begin(), expected.end(), got.begin(), got.end());
    const auto at = static_cast<std::size_t>(ends.first - expected.begin());
    const auto element = [at](const std::vector<std::string>& list) {
        return at < list.size() ? list[at] : "nothing";
    };
    comparison.differ(what + ", number " + std::to_string(at + 1) + " of " +
                          std::to_string(expected.size()),
                      element(expected), element(got));
}

std::string joined(const std::vector<std::string>& list) {
    std::string text;
    for (const std::string& element : list) {
        text += (text.empty() ? "" : ", ") + element;
    }
    return text;
}

} // namespace sandbox
