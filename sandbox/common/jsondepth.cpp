#include "sandbox/common/jsondepth.h"

#include <algorithm>

namespace sandbox {

std::optional<std::size_t> lineTooDeep(std::string_view text) {
    std::size_t depth = 0;
    bool isInText = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (isInText) {
            i += c == '\\' ? 1 : 0; // what is escaped ends nothing
            isInText = c != '"';
        } else if (c == '"') {
            isInText = true;
        } else if ((c == '[' || c == '{') && ++depth > deepestJson) {
            const std::string_view ahead = text.substr(0, i);
            return 1 + static_cast<std::size_t>(std::count(ahead.begin(), ahead.end(), '\n'));
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return std::nullopt;
}

nlohmann::json parsedJson(const std::string& text) {
    return lineTooDeep(text) ? nlohmann::json(nlohmann::json::value_t::discarded)
                             : nlohmann::json::parse(text, nullptr, false);
}

} // namespace sandbox
