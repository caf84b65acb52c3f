#include "sandbox/cli/eventtail.h"

#include <fstream>

namespace sandbox {
namespace {

using Json = nlohmann::json;

Json parsed(const std::string& line) {
    Json event = Json::parse(line, nullptr, false);
    if (!event.is_object() || !event.value("kind", Json()).is_string()) {
        return {{"kind", "failure"}, {"where", "events.jsonl"}, {"text", "damaged line: " + line}};
    }
    return event;
}

} // namespace

void EventTail::skip() {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    offset = error ? 0 : size;
    rest.clear();
}

std::vector<Json> EventTail::next() {
    std::vector<Json> events;
    std::ifstream stream(file, std::ios::binary);
    if (!stream || !stream.seekg(static_cast<std::streamoff>(offset))) {
        return events;
    }
    const std::string piece((std::istreambuf_iterator<char>(stream)), {});
    offset += piece.size();
    rest += piece;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = rest.find('\n', begin)) != std::string::npos;
         begin = end + 1) {
        events.push_back(parsed(rest.substr(begin, end - begin)));
    }
    rest.erase(0, begin);
    return events;
}

} // namespace sandbox
