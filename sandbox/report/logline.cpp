#include "sandbox/report/logline.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "sandbox/report/logtime.h"

namespace sandbox::report {
namespace {

/// How the plug-in's lines begin.
constexpr std::array<std::string_view, 7> beginnings{
    "update plugin, ",
    "updatekelvar, ",
    "XUpdateMgr doItem isMugeMode return",
    "XTaskPkgInstall check isMugeMode return",
    "there is tarnlyoem.dll",
    "load OrvSecurityver.dll failed",
    "get channeltype process failed",
};

std::size_t textBegin(std::string_view line) {
    std::size_t first = std::string_view::npos;
    for (const std::string_view beginning : beginnings) {
        first = std::min(first, line.find(beginning));
    }
    return first;
}

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

/// The number in the brackets that begin at `from`; empty for anything else in them.
std::string_view bracketed(std::string_view text, std::size_t from) {
    const std::size_t close = text.find(']', from);
    if (close == std::string_view::npos) {
        return {};
    }
    const std::string_view inside = text.substr(from + 1, close - from - 1);
    return std::all_of(inside.begin(), inside.end(), isDigit) ? inside : std::string_view{};
}

/// "[level] [thread]", one behind the other; both or none.
void takeBrackets(std::string_view prefix, LogLine& line) {
    for (std::size_t open = prefix.find('['); open != std::string_view::npos;
         open = prefix.find('[', open + 1)) {
        const std::string_view level = bracketed(prefix, open);
        const std::size_t second = open + level.size() + 3; // "[2] ["
        if (level.size() == 1 && prefix.size() > second && prefix[second - 1] == ' ' &&
            prefix[second] == '[' && !bracketed(prefix, second).empty()) {
            line.level = level[0] - '0';
            line.thread = bracketed(prefix, second);
            return;
        }
    }
}

/// A thread with its name in front: "tid=12", "tid: 0x1a", "thread 12".
void takeNamedThread(std::string_view prefix, LogLine& line) {
    for (const std::string_view name : {"tid", "thread", "Thread"}) {
        std::size_t at = prefix.find(name);
        if (at == std::string_view::npos) {
            continue;
        }
        at = prefix.find_first_not_of(" :=#", at + name.size());
        const std::size_t end = prefix.find_first_not_of("0123456789abcdefABCDEFx", at);
        if (at != std::string_view::npos && isDigit(prefix[at])) {
            line.thread = prefix.substr(at, end == std::string_view::npos ? end : end - at);
            return;
        }
    }
}

std::string_view withoutEnd(std::string_view text) {
    const std::size_t end = text.find_last_not_of(" \r\t");
    return text.substr(0, end == std::string_view::npos ? 0 : end + 1);
}

void addLine(std::string_view raw, std::size_t number, Log& log) {
    const std::string valid = validUtf8(raw);
    const std::string_view whole = withoutEnd(valid);
    const std::size_t begin = textBegin(whole);
    if (begin == std::string_view::npos) {
        log.others += whole.empty() ? 0U : 1U; // an empty one is the end of a request's body
        return;
    }
    log.repaired += valid == raw ? 0U : 1U;
    LogLine line;
    line.number = number;
    const std::string_view prefix = whole.substr(0, begin);
    const std::optional<LogTime> time = findTime(prefix);
    if (time) {
        line.at = time->milliseconds;
    }
    log.hasTimes = log.hasTimes && time;
    log.hasDates = log.hasDates && time && time->hasDate;
    takeBrackets(prefix, line);
    if (line.thread.empty()) {
        takeNamedThread(prefix, line);
    }
    log.hasThreads = log.hasThreads && !line.thread.empty();
    line.text = whole.substr(begin);
    log.lines.push_back(std::move(line));
}

/// A clock without a date begins anew at midnight.
void passMidnights(Log& log) {
    std::int64_t days = 0;
    std::optional<std::int64_t> before;
    for (LogLine& line : log.lines) {
        if (!line.at) {
            continue;
        }
        if (before && *line.at + days < *before - dayMilliseconds / 2) {
            days += dayMilliseconds;
        }
        *line.at += days;
        before = line.at;
    }
}

/// Bytes of the sequence that begins with `lead`; 0 when none does.
std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0) {
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return 3;
    }
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// Bytes of the character at the start of `text`; 0 when there is none.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) {
        return static_cast<unsigned char>(text[i]);
    };
    const std::size_t length = sequenceLength(byte(0));
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    const bool isOverlong =
        (byte(0) == 0xE0 && byte(1) < 0xA0) || (byte(0) == 0xF0 && byte(1) < 0x90);
    const bool isNoCharacter =
        (byte(0) == 0xED && byte(1) > 0x9F) || (byte(0) == 0xF4 && byte(1) > 0x8F);
    return isOverlong || isNoCharacter ? 0 : length;
}

} // namespace

std::string validUtf8(std::string_view text) {
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) {
            valid += "\xEF\xBF\xBD";
        } else {
            valid += text.substr(0, length);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return valid;
}

Log readLog(std::string_view text) {
    Log log;
    log.hasTimes = log.hasDates = log.hasThreads = true;
    log.endsInMidLine = !text.empty() && text.back() != '\n';
    std::size_t number = 1;
    for (std::size_t end = 0; (end = text.find('\n')) != std::string_view::npos; ++number) {
        addLine(text.substr(0, end), number, log);
        text.remove_prefix(end + 1);
    }
    const bool isEmpty = log.lines.empty();
    log.hasTimes = log.hasTimes && !isEmpty;
    log.hasDates = log.hasDates && !isEmpty;
    log.hasThreads = log.hasThreads && !isEmpty;
    if (!log.hasDates) {
        passMidnights(log);
    }
    return log;
}

} // namespace sandbox::report
