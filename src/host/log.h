#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

#include "host/functionname.h"

/// Levels of log lines; no other is in use.
inline constexpr int logProgress = 2;
inline constexpr int logFault = 4;

namespace logdetail {

inline constexpr std::size_t longestNumber = 20; ///< digits of a 64-bit number, or its sign

template <class V>
std::size_t sizeBound(const V& value) {
    if constexpr (std::integral<V>) {
        return longestNumber;
    } else {
        return std::string_view(value).size();
    }
}

template <class V>
void appendPiece(std::string& line, const V& value) {
    if constexpr (std::same_as<V, bool>) {
        line += value ? '1' : '0';
    } else if constexpr (std::integral<V>) {
        char digits[longestNumber];
        line.append(digits, std::to_chars(digits, digits + longestNumber, value).ptr);
    } else {
        line += std::string_view(value);
    }
    line += ' ';
}

template <class... Values>
std::string lineOf(std::string_view text, const Values&... values) {
    std::string line;
    line.reserve(text.size() + 1 + (0 + ... + (sizeBound(values) + 1)));
    appendPiece(line, text);
    (appendPiece(line, values), ...);
    return line;
}

} // namespace logdetail

/// The name that a log line carries for a function: the qualified name without result
/// type, parameters and qualifiers; a lambda adds "::<lambda>::operator ()" to the name
/// of the function around it. `signature` is what __PRETTY_FUNCTION__ or __FUNCSIG__
/// gives, or a name that is plain already.
std::string qualifiedName(std::string_view signature);

/// Hands a finished line to the debug output and to writeLog of xnbase.dll, if that
/// module is loaded. `function` is the name that the line carries. Any thread; never fails.
void writeLogLine(int level, const char* file, int line, const char* function,
                  const std::string& text);

/// The one log call. Each piece, `text` included, is followed by one blank; a number is
/// written in decimal, a bool as 1 or 0. Both sinks get every line.
template <class... Values>
void log(int level, const char* file, int line, const char* function, std::string_view text,
         const Values&... values) {
    writeLogLine(level, file, line, qualifiedName(function).c_str(),
                 logdetail::lineOf(text, values...));
}

#if defined(_MSC_VER)
#define XLOG_SIGNATURE __FUNCSIG__
#else
#define XLOG_SIGNATURE __PRETTY_FUNCTION__
#endif

/// log with the place of the caller: XLOG(logProgress, "update plugin, …", value, …). The name
/// of the function is worked out while the program is built.
#define XLOG(level, ...)                                                                           \
    do {                                                                                           \
        static constexpr auto xlogName =                                                           \
            ::functionname::nameOf<::functionname::lengthOf(XLOG_SIGNATURE)>(XLOG_SIGNATURE);      \
        ::writeLogLine((level), __FILE__, __LINE__, xlogName.text,                                 \
                       ::logdetail::lineOf(__VA_ARGS__));                                          \
    } while (false)
