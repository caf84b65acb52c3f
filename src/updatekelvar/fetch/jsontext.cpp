#include "updatekelvar/fetch/jsontext.h"

#include <json/json.h>

// The library's reader and writer of old: the platform knows their dialect, and the
// newer ones differ in what they accept and in the newline at the end.
#if defined(_MSC_VER)
#pragma warning(disable : 4996)
#else
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace jsontext {

bool parse(const std::string& text, Json::Value& root) {
    constexpr bool collectComments = true;
    return Json::Reader(Json::Features::strictMode()).parse(text, root, collectComments);
}

std::string write(const Json::Value& root) {
    return Json::FastWriter().write(root);
}

} // namespace jsontext
