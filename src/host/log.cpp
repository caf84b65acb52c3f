#include "host/log.h"

#include "host/hostmodules.h"
#include "platform/debug.h"

namespace {

constexpr std::string_view lambdaName = "::<lambda>::operator ()";

/// End of the bracketed text that begins at `open`, behind its closing bracket.
std::size_t skipBrackets(std::string_view text, std::size_t open) {
    int depth = 0;
    for (std::size_t i = open; i < text.size(); ++i) {
        if (text[i] == '(' || text[i] == '<' || text[i] == '{') {
            ++depth;
        } else if (text[i] == ')' || text[i] == '>' || text[i] == '}') {
            if (--depth == 0) {
                return i + 1;
            }
        }
    }
    return text.size();
}

bool startsAt(std::string_view text, std::size_t at, std::string_view what) {
    return text.substr(at, what.size()) == what;
}

/// Whether a bracket at `at` stands for a name ("(anonymous namespace)") and not for
/// parameters.
bool isNamePart(std::string_view text, std::size_t at) {
    return startsAt(text, at, "(anonymous") || text[at] == '{';
}

/// Start and end of the name in a signature: from behind the result type up to the
/// parameters.
std::pair<std::size_t, std::size_t> findName(std::string_view text) {
    std::size_t start = 0;
    std::size_t i = 0;
    while (i < text.size()) {
        if (startsAt(text, i, "operator()") || startsAt(text, i, "operator ()")) {
            return {start, text.find(')', i) + 1};
        }
        if (text[i] == ' ') {
            start = ++i;
        } else if (text[i] == '(' && !isNamePart(text, i)) {
            return {start, i};
        } else if (text[i] == '<' || text[i] == '(' || text[i] == '{') {
            i = skipBrackets(text, i);
        } else {
            ++i;
        }
    }
    return {start, text.size()};
}

std::size_t countOf(std::string_view text, std::string_view what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string_view::npos;
         at = text.find(what, at + what.size())) {
        ++count;
    }
    return count;
}

/// How many lambdas the text behind the first parameters passes through, by the ways in
/// which compilers spell one.
std::size_t countLambdas(std::string_view text) {
    return countOf(text, "::<lambda") + countOf(text, "::(anonymous class)");
}

/// One compiler numbers its lambdas: "<lambda_1>".
void dropNumbers(std::string& name) {
    constexpr std::string_view numbered = "<lambda_";
    for (std::size_t at = name.find(numbered); at != std::string::npos; at = name.find(numbered)) {
        const std::size_t end = name.find('>', at);
        name.erase(at + numbered.size() - 1, end - at - numbered.size() + 1);
    }
}

} // namespace

std::string qualifiedName(std::string_view signature) {
    const std::size_t bound = signature.find(" [with ");
    const std::string_view text =
        signature.substr(0, bound == std::string_view::npos ? signature.find(" [") : bound);
    const auto [start, end] = findName(text);
    std::string name(text.substr(start, end - start));
    dropNumbers(name);
    for (std::size_t i = countLambdas(text.substr(end)); i > 0; --i) {
        name += lambdaName;
    }
    return name;
}

void writeLogLine(int level, const char* file, int line, const char* function,
                  const std::string& text) {
    platform::debugOutput(text.c_str());
    hostmodules::writeLog(level, file, line, qualifiedName(function).c_str(), text.c_str(),
                          text.size());
}
