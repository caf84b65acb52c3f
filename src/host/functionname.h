#pragma once

#include <cstddef>
#include <string_view>

/// The name that a log line carries for a function, from what the compilers give for its
/// signature; see qualifiedName in host/log.h. All of it can run while the program is built.
namespace functionname {

inline constexpr std::string_view lambdaName = "::<lambda>::operator ()";
inline constexpr std::string_view numberedLambda = "<lambda_"; ///< one compiler's: "<lambda_1>"

constexpr bool startsAt(std::string_view text, std::size_t at, std::string_view what) {
    return text.substr(at, what.size()) == what;
}

/// End of the bracketed text that begins at `open`, behind its closing bracket.
constexpr std::size_t skipBrackets(std::string_view text, std::size_t open) {
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

/// Whether a bracket at `at` stands for a name ("(anonymous namespace)") and not for
/// parameters.
constexpr bool isNamePart(std::string_view text, std::size_t at) {
    return startsAt(text, at, "(anonymous") || text[at] == '{';
}

struct Range {
    std::size_t start;
    std::size_t end;
};

/// The name in a signature: from behind the result type up to the parameters.
constexpr Range findName(std::string_view text) {
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

constexpr std::size_t countOf(std::string_view text, std::string_view what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string_view::npos;
         at = text.find(what, at + what.size())) {
        ++count;
    }
    return count;
}

/// How many lambdas the text behind the first parameters passes through, by the ways in
/// which compilers spell one.
constexpr std::size_t countLambdas(std::string_view text) {
    return countOf(text, "::<lambda") + countOf(text, "::(anonymous class)");
}

/// The signature without the arguments of templates behind it.
constexpr std::string_view withoutBindings(std::string_view signature) {
    const std::size_t bound = signature.find(" [with ");
    return signature.substr(0, bound == std::string_view::npos ? signature.find(" [") : bound);
}

/// Hands the name to `put`, a character a call.
template <class Put>
constexpr void spell(std::string_view signature, Put put) {
    const std::string_view text = withoutBindings(signature);
    const Range range = findName(text);
    const std::string_view name = text.substr(range.start, range.end - range.start);
    for (std::size_t i = 0; i < name.size();) {
        if (startsAt(name, i, numberedLambda)) {
            for (const char c : numberedLambda.substr(0, numberedLambda.size() - 1)) {
                put(c);
            }
            while (i < name.size() && name[i] != '>') {
                ++i;
            }
        } else {
            put(name[i++]);
        }
    }
    for (std::size_t i = countLambdas(text.substr(range.end)); i > 0; --i) {
        for (const char c : lambdaName) {
            put(c);
        }
    }
}

constexpr std::size_t lengthOf(std::string_view signature) {
    std::size_t length = 0;
    spell(signature, [&length](char) { ++length; });
    return length;
}

/// A name with its terminating zero.
template <std::size_t length>
struct Name {
    char text[length + 1] = {};
};

/// `length` is that of `lengthOf`.
template <std::size_t length>
constexpr Name<length> nameOf(std::string_view signature) {
    Name<length> name;
    std::size_t at = 0;
    spell(signature, [&](char c) { name.text[at++] = c; });
    return name;
}

} // namespace functionname
