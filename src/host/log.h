#pragma once

#include <concepts>
#include <string>
#include <string_view>

/// Levels of log lines; no other is in use.
inline constexpr int logProgress = 2;
inline constexpr int logFault = 4;

namespace logdetail {

template <class V>
std::string pieceOf(const V& value) {
    if constexpr (std::same_as<V, bool>) {
        return value ? "1" : "0";
    } else if constexpr (std::integral<V>) {
        return std::to_string(value);
    } else {
        return std::string(value);
    }
}

} // namespace logdetail

/// The name that a log line carries for a function: the qualified name without result
/// type, parameters and qualifiers; a lambda adds "::<lambda>::operator ()" to the name
/// of the function around it. `signature` is what __PRETTY_FUNCTION__ or __FUNCSIG__
/// gives, or a name that is plain already.
std::string qualifiedName(std::string_view signature);

/// Hands a finished line to the debug output and to writeLog of xnbase.dll, if that
/// module is loaded. Any thread; never fails.
void writeLogLine(int level, const char* file, int line, const char* function,
                  const std::string& text);

/// The one log call. Each piece, `text` included, is followed by one blank; a number is
/// written in decimal, a bool as 1 or 0. Both sinks get every line.
template <class... Values>
void log(int level, const char* file, int line, const char* function, std::string_view text,
         const Values&... values) {
    std::string pieces(text);
    pieces += ' ';
    ((pieces += logdetail::pieceOf(values), pieces += ' '), ...);
    writeLogLine(level, file, line, function, pieces);
}

#if defined(_MSC_VER)
#define XLOG_SIGNATURE __FUNCSIG__
#else
#define XLOG_SIGNATURE __PRETTY_FUNCTION__
#endif

/// log with the place of the caller: XLOG(logProgress, "update plugin, …", value, …).
#define XLOG(level, ...) ::log((level), __FILE__, __LINE__, XLOG_SIGNATURE, __VA_ARGS__)
