#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <json/value.h>

/// Text of JSON values as the update platform writes and reads it.
namespace jsontext {

/// A parsed text: strict JSON, without comments, an object or an array as root, nested no deeper
/// than 999 levels. As a tree a long answer takes many times its text; so the arrays directly
/// in a root object stay text, and their elements are parsed one at a time. Borrows the text.
class Document {
public:
    using ElementStep = std::function<void(const Json::Value& element)>;

    /// False for a text that is no such JSON, as far as it is parsed by now.
    bool parse(std::string_view text);

    /// The root. An array directly in a root object tells only that it is one.
    const Json::Value& root() const { return outline; }

    /// The elements of an array directly in a root object, in their order. False when one of
    /// them is no JSON.
    bool readElements(const Json::Value& array, const ElementStep& step);

    /// Parses the arrays that nobody has read. False when one of them is none.
    bool parseUnread();

private:
    struct Array {
        std::vector<std::string_view> elements;
        bool isRead = false;
    };

    Json::Value outline;
    std::vector<Array> arrays; ///< in the outline an array holds its number here and nothing else
};

/// One line and a newline, keys sorted, everything beyond ASCII escaped.
std::string write(const Json::Value& root);

} // namespace jsontext
