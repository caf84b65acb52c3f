#include "updatekelvar/fetch/jsontext.h"

#include <json/json.h>

// The library's reader and writer of old: the platform knows their dialect, and the
// newer ones differ in what they accept and in the newline at the end.
#if defined(_MSC_VER)
#pragma warning(disable : 4996)
#else
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace {

constexpr int maxDepth = 999; // the library counts the value inside too and throws beyond 1000

/// Whether brackets outside of texts nest deeper than the library bears.
bool isTooDeep(const std::string& text) {
    int depth = 0;
    bool inText = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inText && c == '\\') {
            ++i;
        } else if (c == '"') {
            inText = !inText;
        } else if (!inText && (c == '[' || c == '{')) {
            if (++depth > maxDepth) {
                return true;
            }
        } else if (!inText && (c == ']' || c == '}')) {
            --depth;
        }
    }
    return false;
}

} // namespace

namespace jsontext {

bool parse(const std::string& text, Json::Value& root) {
    if (isTooDeep(text)) {
        return false;
    }
    constexpr bool collectComments = true;
    return Json::Reader(Json::Features::strictMode()).parse(text, root, collectComments);
}

std::string write(const Json::Value& root) {
    return Json::FastWriter().write(root);
}

} // namespace jsontext
