#include "sandbox/check/expression.h"

#include <algorithm>
#include <array>
#include <optional>

#include "sandbox/common/dottedversion.h"

namespace sandbox::check {
namespace {

constexpr std::array<const char*, 5> operators{">=", ">", "<=", "<", "=="};
constexpr std::size_t systemParts = 3; // major.minor.build
constexpr std::size_t clientParts = 4;

bool isOperator(const std::string& text) {
    return std::find(operators.begin(), operators.end(), text) != operators.end();
}

std::string withoutBlanks(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
    return text;
}

struct Bound {
    std::string op;
    std::string version;
};

class Reader {
public:
    Reader(const Located& whole, const std::string& parameterName, const std::string& tagName,
           Mistakes& found)
        : expression(whole), parameter(parameterName), tag(tagName), mistakes(found) {}

    void run() {
        std::string rest = expression.text;
        while (!rest.empty()) {
            const std::size_t end = rest.find("&&");
            readClause(rest.substr(0, end));
            rest = end == std::string::npos ? "" : rest.substr(end + 2);
        }
        if (low && high) {
            checkRange();
        }
    }

private:
    void readClause(const std::string& clause) {
        const std::size_t at = clause.find(tag);
        const std::size_t open = clause.find('"');
        const std::size_t close = open == std::string::npos ? open : clause.find('"', open + 1);
        if (at == std::string::npos) {
            return addClause(clause,
                             isOnOther(clause) ? "is not on " + tag : "does not name " + tag);
        }
        if (close == std::string::npos || open < at + tag.size()) {
            return addClause(clause, "has no version in double quotes behind it");
        }
        const std::string op = clause.substr(at + tag.size(), open - at - tag.size());
        if (!isOperator(op)) {
            const char* why = isOperator(withoutBlanks(op)) ? ": a blank in it" : "";
            return add("expression-operator",
                       "\"" + op + "\" is no operator" + why + "; the clause stores nothing");
        }
        if (at > 0 || close + 1 < clause.size()) {
            add("expression-extra-text", "the client does not look at all of \"" + clause +
                                             "\"; clauses are joined by && alone");
        }
        take({op, clause.substr(open + 1, close - open - 1)});
    }

    bool isOnOther(const std::string& clause) const {
        return clause.find(tag == clientTag ? systemTag : clientTag) != std::string::npos;
    }

    void take(const Bound& bound) {
        checkVersion(bound);
        std::optional<Bound>& side = bound.op[0] == '>' ? low : high;
        if (side) {
            add("expression-clause-replaced", side->op + "\"" + side->version +
                                                  "\" is replaced by the later " + bound.op + "\"" +
                                                  bound.version + "\"");
        }
        side = bound;
    }

    void checkVersion(const Bound& bound) {
        const std::size_t own = tag == systemTag ? systemParts : clientParts;
        if (!isDottedVersion(bound.version)) {
            add("expression-version", "\"" + bound.version + "\" is no version of dotted numbers");
        } else if (partsOf(bound.version) > own) {
            add("expression-version", "\"" + bound.version + "\" has more than the " +
                                          std::to_string(own) + " parts of " + tag +
                                          ": of two versions that begin alike the longer one is "
                                          "the newer");
        } else if (bound.op == "==" && partsOf(bound.version) != own) {
            add("expression-never", "== \"" + bound.version + "\" never holds: " + tag + " has " +
                                        std::to_string(own) + " parts");
        }
    }

    void checkRange() {
        const int order = compareVersions(low->version, high->version);
        const bool isOpen = low->op == ">" || high->op == "<";
        if (order > 0 || (order == 0 && isOpen)) {
            add("expression-never", "no version is " + low->op + " " + low->version + " and " +
                                        high->op + " " + high->version);
        }
    }

    void addClause(const std::string& clause, const std::string& why) {
        add("expression-no-clause",
            "the clause \"" + clause + "\" " + why + ", so it stores nothing and refuses nobody");
    }

    void add(const char* code, const std::string& text) {
        mistakes.add(expression.line, code, parameter + ": " + text);
    }

    const Located& expression;
    const std::string& parameter;
    const std::string& tag;
    Mistakes& mistakes;
    std::optional<Bound> low;
    std::optional<Bound> high; ///< "==" is of this side too
};

} // namespace

void checkExpression(const Located& expression, const std::string& parameter,
                     const std::string& tag, Mistakes& mistakes) {
    Reader(expression, parameter, tag, mistakes).run();
}

void checkSystemVersion(const Located& version, Mistakes& mistakes) {
    if (version.text.empty()) {
        return;
    }
    if (version.text.find_first_of("<>=%\"") != std::string::npos) {
        mistakes.add(version.line, "osver-operator",
                     "osver is one version and no condition: " + version.text +
                         "; a range is for check_sys");
    } else if (!isDottedVersion(version.text) || partsOf(version.text) != systemParts) {
        mistakes.add(version.line, "osver-form",
                     "osver \"" + version.text +
                         "\" equals no system's version, which has three numbers");
    }
}

} // namespace sandbox::check
