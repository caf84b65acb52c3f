#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace jsontext {

/// Whether nothing but what JSON takes for blank is in it.
bool isBlank(std::string_view text);

/// A JSON text without the elements of the arrays directly in its root object: in the place of
/// each array's elements stands its number. Only brackets, commas and texts are looked at, so
/// what is no JSON stays none: outline and elements can be parsed exactly when the whole can and
/// has no comment.
struct Outline {
    /// False for a text with a comment, and for one with brackets that nest deeper than the JSON
    /// library bears. What follows the root is looked at by nobody.
    bool take(std::string_view json);

    std::string text;
    std::vector<std::vector<std::string_view>> arrays; ///< elements with the blanks around them

private:
    void _open(char bracket, std::size_t at);
    void _comma(std::size_t at);
    void _close(std::size_t at);
    void _endElement(std::size_t at);

    std::string_view source;
    std::size_t copied = 0;       ///< how far the source is in `text`
    std::size_t elementStart = 0; ///< of the element that is open
    int depth = 0;
    bool isRootObject = false;
    bool isRootOver = false;
    bool isInArray = false; ///< in an array directly in the root
};

} // namespace jsontext
