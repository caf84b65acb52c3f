#include "fuzz/fuzz.h"
#include "updatekelvar/data/materialcheck.h"
#include "utils/utils.h"

// A material's conditions, "check_app" and "check_sys", and the order of versions under them.
// Input: the running version, a bound, and the condition in the lines behind.

namespace {

class FixedVersionCheck final : public XMaterialCheck {
public:
    explicit FixedVersionCheck(const std::string& version) : current(version) {}

private:
    std::string _getTag() override { return "%appver%"; }
    std::string _getCurVersion() override { return current; }

    const std::string& current;
};

bool passes(const std::string& version, const std::string& condition) {
    FixedVersionCheck check(version);
    fuzz::require((check.parse(condition) == -1) == condition.empty(), "-1 for no text alone");
    return check.check();
}

void clausesStandForThemselves(const std::string& version, const std::string& condition) {
    const bool verdict = passes(version, condition);
    fuzz::require(passes(version, "unreadable&&" + condition) == verdict,
                  "an unreadable clause says nothing");
    if (!condition.ends_with('&')) {
        fuzz::require(passes(version, condition + "&&" + condition) == verdict,
                      "a condition told twice is the same condition");
    }
}

void operatorsAgree(const std::string& version, const std::string& bound) {
    const auto holds = [&](const std::string& op) {
        return passes(version, "%appver%" + op + "\"" + bound + "\"");
    };
    const bool less = holds("<");
    const bool equal = holds("==");
    const bool greater = holds(">");
    fuzz::require(int{less} + int{equal} + int{greater} == 1, "one of <, == and > holds", bound);
    fuzz::require(holds("<=") == (less || equal) && holds(">=") == (greater || equal),
                  "<= and >= take the bound in", bound);
}

void versionsAreOrdered(const std::string& a, const std::string& b, const std::string& c) {
    const int ab = utils::compareVersion(a, b);
    fuzz::require(ab == -utils::compareVersion(b, a), "the order does not hang on the side");
    fuzz::require(utils::compareVersion(a, a) == 0, "a version equals itself");
    if (ab <= 0 && utils::compareVersion(b, c) <= 0) {
        fuzz::require(utils::compareVersion(a, c) <= 0, "the order is transitive");
    }
}

} // namespace

FUZZ_TARGET(conditions) {
    std::string condition = input;
    const std::string version = fuzz::takeLine(condition);
    const std::string bound = fuzz::takeLine(condition);
    clausesStandForThemselves(version, condition);
    if (!bound.empty() && bound.find('"') == bound.npos && bound.find("&&") == bound.npos) {
        operatorsAgree(version, bound);
    }
    versionsAreOrdered(version, bound, condition);
}
