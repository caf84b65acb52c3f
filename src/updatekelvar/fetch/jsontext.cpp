#include "updatekelvar/fetch/jsontext.h"

#include <json/json.h>

#include "updatekelvar/fetch/jsonoutline.h"

// The library's reader and writer of old: the platform knows their dialect, and the
// newer ones differ in what they accept and in the newline at the end.
#if defined(_MSC_VER)
#pragma warning(disable : 4996)
#else
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace jsontext {

namespace {

constexpr bool collectComments = false; // there are none behind the outline

Json::Features elementFeatures() {
    Json::Features features = Json::Features::strictMode();
    features.strictRoot_ = false; // any value
    return features;
}

bool parseElement(Json::Reader& reader, std::string_view text, Json::Value& element) {
    // The reader stops behind a value, whatever follows.
    return reader.parse(text.data(), text.data() + text.size(), element, collectComments) &&
           isBlank(text.substr(static_cast<std::size_t>(element.getOffsetLimit())));
}

} // namespace

bool Document::parse(std::string_view text) {
    Outline found;
    if (!found.take(text)) {
        return false;
    }
    arrays.clear();
    for (std::vector<std::string_view>& elements : found.arrays) {
        arrays.push_back({std::move(elements)});
    }
    const std::string& rest = found.text;
    return Json::Reader(Json::Features::strictMode())
        .parse(rest.data(), rest.data() + rest.size(), outline, collectComments);
}

bool Document::readElements(const Json::Value& array, const ElementStep& step) {
    // An array that the outline has taken for none would bring an element of its own.
    const Json::Value& number = array[0];
    if (array.size() != 1 || !number.isUInt() || number.asUInt() >= arrays.size()) {
        return false;
    }
    Array& read = arrays[number.asUInt()];
    read.isRead = true;
    Json::Reader reader(elementFeatures());
    for (const std::string_view text : read.elements) {
        Json::Value element;
        if (!parseElement(reader, text, element)) {
            return false;
        }
        step(element);
    }
    return true;
}

bool Document::parseUnread() {
    for (const Array& array : arrays) {
        Json::Reader reader(elementFeatures());
        for (const std::string_view text : array.elements) {
            Json::Value element;
            if (!array.isRead && !parseElement(reader, text, element)) {
                return false;
            }
        }
    }
    return true;
}

std::string write(const Json::Value& root) {
    return Json::FastWriter().write(root);
}

} // namespace jsontext
